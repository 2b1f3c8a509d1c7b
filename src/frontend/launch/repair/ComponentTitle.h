#pragma once

#include <QString>

/// What a component of the catalogue is to a user: "Visual C++ 2013" for vcredist2013, the same in all
/// languages. The component's own name where nothing better is known.
QString componentTitle(const QString& component);
