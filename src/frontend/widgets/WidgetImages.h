#pragma once

#include <QString>

/// The file of one of the library's own pictures.
QString widgetImage(const char* name);
