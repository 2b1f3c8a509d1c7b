#pragma once

#include "fenk/log/AbstractAppender.h"

namespace Fenk {

/// Writes to standard error, with one write() per message.
class ConsoleAppender : public AbstractAppender {
public:
    void append(const QDateTime& time, QtMsgType type, const char* file, int line, const char* function,
                const QString& category, const QString& message) override;
};

}  // namespace Fenk
