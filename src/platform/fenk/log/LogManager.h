#pragma once

#include <QString>

namespace Fenk {

/// Process-wide settings of logging, set once at start.
class LogManager {
public:
    LogManager() = delete;

    static void setLogFormat(const QString& format);  ///< for appenders created from now on
    static QString logFormat();

    static void registerConsoleAppender();

    /// "<CacheLocation>/<application name>.log" unless set.
    static QString getlogFilePath();
    static void setlogFilePath(const QString& path);
};

}  // namespace Fenk
