#pragma once

#include <QObject>

#include "bottleservice/result/Answer.h"

/// One piece of work on one bottle. start() is called once by the queue; the job answers and emits finished()
/// exactly once, at once or later, also after cancel(). A job that is destroyed before it came to its end
/// answers that it was cancelled.
class Job : public QObject {
    Q_OBJECT

public:
    explicit Job(Reply reply, QObject* parent = nullptr);
    ~Job() override;

    virtual void start() = 0;

    /// Asks a started job to end soon and to leave nothing half done. Jobs that take no time need not do
    /// anything.
    virtual void cancel() {}

Q_SIGNALS:
    void finished();

protected:
    void finish(const Answer& answer);

private:
    void answerOnce(const Answer& answer);

    Reply m_reply;
    bool m_finished = false;
};
