#pragma once

#include <QObject>

#include "bottleservice/result/Answer.h"

/// One piece of work on one bottle. The queue calls start() once; the job answers and emits finished()
/// exactly once, during start() or later, also after cancel(). A job that is destroyed before its end answers
/// that it was cancelled. Owned by its JobQueue; lives in the main thread.
class Job : public QObject {
    Q_OBJECT

public:
    explicit Job(Reply reply, QObject* parent = nullptr);
    ~Job() override;

    virtual void start() = 0;

    /// Asks a started job to end soon and to leave nothing unfinished. Jobs that take no time need not
    /// implement it.
    virtual void cancel() {}

    /// Ends a job that was not started.
    void refuse(const Answer& answer) { finish(answer); }

Q_SIGNALS:
    void finished();

protected:
    void finish(const Answer& answer);

private:
    void answerOnce(const Answer& answer);

    Reply m_reply;
    bool m_finished = false;
};
