#pragma once

#include <mutex>

#include "fenk/log/AbstractAppender.h"

namespace Fenk {

/// Appends to a file, with one write() per message, so lines of several processes do not mix. Creates the
/// file and its directory, readable by the user only, at the first message and again if they have been
/// removed.
///
/// While the file cannot be opened or written, messages are dropped and one notice is written to standard
/// error; opening is retried after RetrySeconds of the messages' time, writing with the next message.
class FileAppender : public AbstractAppender {
public:
    static constexpr int RetrySeconds = 10;

    explicit FileAppender(const QString& fileName);
    ~FileAppender() override;

    QString fileName() const { return m_fileName; }

    void append(const QDateTime& time, QtMsgType type, const char* file, int line, const char* function,
                const QString& category, const QString& message) override;

protected:
    /// Called under the lock before each line is written. Override it to change files.
    virtual void prepare(const QDateTime& time);

    void closeFile();  ///< the next line reopens fileName()
    void notice(const QString& text);

private:
    bool openFile(const QDateTime& time);
    bool writeLine(const QByteArray& line);

    const QString m_fileName;
    std::mutex m_mutex;
    int m_fd = -1;
    QDateTime m_retryAt;
    bool m_torn = false;     ///< the last line in the file is incomplete
    bool m_noticed = false;  ///< the error has been reported
};

}  // namespace Fenk
