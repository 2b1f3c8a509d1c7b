#pragma once

#include <QLoggingCategory>

/// "wineapp.window"
Q_DECLARE_LOGGING_CATEGORY(windowLog)
