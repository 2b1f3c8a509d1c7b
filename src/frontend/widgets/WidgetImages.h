#pragma once

#include <QIcon>
#include <QString>

/// The file of one of the library's own pictures.
QString widgetImage(const char* name);

/// The desktop's icon for warnings, or ours.
QIcon warningIcon();
