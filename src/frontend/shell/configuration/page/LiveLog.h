#pragma once

#include <QObject>
#include <QThreadPool>
#include <QVector>
#include <memory>

class LogLineReader;

/// One line of a debugging run as the pane shows it.
struct LiveLogLine {
    QString text;
    bool isError;
};

/// Makes lines of what a debugging run prints, in a thread of its own, and leaves out those that only trace
/// calls (see DebugLog). Lines come in batches; a batch has at most MaxLines, the newest, so that a flood of
/// them neither takes memory nor stops the window. GUI thread; one for each run.
class LiveLog : public QObject {
    Q_OBJECT
public:
    static constexpr int MaxLines = 20000;  ///< of a batch, and of the pane

    explicit LiveLog(QObject* parent);
    /// Waits for the batch under way, which takes milliseconds.
    ~LiveLog() override;

    /// Bytes in whatever pieces. A line that is not complete waits for its end.
    void add(const QByteArray& bytes);
    /// No more bytes come. The incomplete line is a line now.
    void end();

Q_SIGNALS:
    void linesRead(const QVector<LiveLogLine>& lines);
    /// Once after end(), when all lines have been read.
    void ended();

private:
    void readNext();

    std::shared_ptr<LogLineReader> m_reader;  ///< used by one batch at a time
    QThreadPool m_thread;
    QByteArray m_waiting;
    bool m_isReading = false;
    bool m_isAtEnd = false;
};
