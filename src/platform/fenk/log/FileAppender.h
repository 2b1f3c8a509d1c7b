#pragma once

#include <mutex>

#include "fenk/log/AbstractAppender.h"

namespace Fenk {

/// Appends to a file, one write a message, so that lines of several processes do not mix. The file and its
/// directory are made when the first message comes, readable by the user only, and again when someone removed
/// them.
///
/// While the file cannot be opened or written, messages are dropped and one notice goes to standard error;
/// opening is tried again after RetrySeconds of the messages' time, writing with the next message.
class FileAppender : public AbstractAppender {
public:
    static constexpr int RetrySeconds = 10;

    explicit FileAppender(const QString& fileName);
    ~FileAppender() override;

    QString fileName() const { return m_fileName; }

    void append(const QDateTime& time, QtMsgType type, const char* file, int line, const char* function,
                const QString& category, const QString& message) override;

protected:
    /// Called under the lock before each line is written. Overridden to change files.
    virtual void prepare(const QDateTime& time);

    void closeFile();  ///< the next line opens fileName() anew
    void notice(const QString& text);

private:
    bool openFile(const QDateTime& time);
    bool writeLine(const QByteArray& line);

    const QString m_fileName;
    std::mutex m_mutex;
    int m_fd = -1;
    QDateTime m_retryAt;
    bool m_torn = false;     ///< the file's last line lacks its end
    bool m_noticed = false;  ///< the trouble has been told
};

}  // namespace Fenk
