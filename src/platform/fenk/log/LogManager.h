#pragma once

#include <QString>

namespace Fenk {

/// Process-wide choices about logging, made once at start by the program's own logging set-up.
class LogManager {
public:
    LogManager() = delete;

    static void setLogFormat(const QString& format);  ///< for appenders made from now on
    static QString logFormat();

    static void registerConsoleAppender();

    /// "<CacheLocation>/<application name>.log" unless set.
    static QString getlogFilePath();
    static void setlogFilePath(const QString& path);
};

}  // namespace Fenk
