#pragma once

#include "fenk/log/RollingFileAppender.h"

/// The program's log file. Home directories are replaced in every message, since logs leave the machine with
/// feedback; the console shows messages unchanged.
class CxbRollingFileAppender : public Fenk::RollingFileAppender {
public:
    using Fenk::RollingFileAppender::RollingFileAppender;
    ~CxbRollingFileAppender() override;

    void append(const QDateTime& time, QtMsgType type, const char* file, int line, const char* function,
                const QString& category, const QString& message) override;
};
