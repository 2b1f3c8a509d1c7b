#pragma once

#include <QString>

/// The file of one of the store's own pictures.
QString storeImage(const char* name);
