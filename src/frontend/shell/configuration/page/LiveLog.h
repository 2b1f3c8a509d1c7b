#pragma once

#include <QObject>
#include <QTimer>
#include <QVector>
#include <memory>

#include "backend/OwnThread.h"

/// One line of a debugging run as the pane shows it.
struct LiveLogLine {
    QString text;
    bool isError;
    int skipped = 0;  ///< lines before it that were left out
};

/// Makes lines of what a debugging run prints, in a thread of its own, and leaves out those that only trace
/// calls (see DebugLog). Lines come a few at a time; of what has come meanwhile only the newest lines count,
/// as many as the pane keeps, and of bytes that wait only the newest MaxWaitingBytes, so that a flood neither
/// takes memory nor stops the window. GUI thread; one for each run.
class LiveLog : public QObject {
    Q_OBJECT
public:
    static constexpr int MaxWaitingBytes = 32 << 20;

    explicit LiveLog(QObject* parent);

    /// Bytes in whatever pieces. A line that is not complete waits for its end.
    void add(const QByteArray& bytes);
    /// No more bytes come. The incomplete line is a line now.
    void end();

Q_SIGNALS:
    void linesRead(const QVector<LiveLogLine>& lines);
    /// Once after end(), when all lines have been read.
    void ended();

private:
    struct Batch {
        QByteArray bytes;
        int skipped = 0;      ///< lines that were dropped before them
        bool isLast = false;  ///< no batch follows
    };
    class Reader;

    void dropOldest();
    void readNext();
    void deliver();

    std::shared_ptr<Reader> m_reader;  ///< used by one batch at a time
    OwnThread m_thread;
    Batch m_waiting;
    QVector<LiveLogLine> m_lines;  ///< of the last batch
    int m_delivered = 0;           ///< of these
    bool m_isLast = false;         ///< no batch follows
    QTimer m_delivery;             ///< other events come between two deliveries
    bool m_isReading = false;
};
