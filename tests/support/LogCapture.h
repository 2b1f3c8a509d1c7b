#pragma once

#include <QMutex>
#include <QString>
#include <QVector>

namespace TestSupport {

/// Collects the messages of Qt's message functions during its life, from every thread, and restores the
/// previous handler. One at a time.
class LogCapture {
public:
    struct Line {
        QtMsgType type;
        QString text;
    };

    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QVector<Line> lines() const;
    /// Number of lines that contain the text.
    int count(const QString& text) const;
    bool contains(const QString& text) const { return count(text) > 0; }
    bool contains(QtMsgType type, const QString& text) const;
    /// All lines joined, to show when a test fails.
    QString text() const;

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);

    mutable QMutex m_mutex;
    QVector<Line> m_lines;
    QtMessageHandler m_previous = nullptr;
};

}  // namespace TestSupport
