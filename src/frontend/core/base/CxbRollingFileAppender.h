#pragma once

#include "fenk/log/RollingFileAppender.h"

/// The program's log file. Home directories are taken out of every message, as logs leave the machine with
/// feedback; the console shows them as they are.
class CxbRollingFileAppender : public Fenk::RollingFileAppender {
public:
    using Fenk::RollingFileAppender::RollingFileAppender;
    ~CxbRollingFileAppender() override;

    void append(const QDateTime& time, QtMsgType type, const char* file, int line, const char* function,
                const QString& category, const QString& message) override;
};
