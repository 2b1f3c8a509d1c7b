#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QVector>

#include "bottleservice/result/Answer.h"

class BottleEngine;
struct Runner;

/// Makes the templates of all runners anew, one after the other, and then lets the bottles of a runner that
/// has changed follow. What was there serves until the new is complete. Who asks meanwhile joins the work
/// that is under way; each gets an answer at its end, a failure when a template could not be made.
class TemplateRequests : public QObject {
    Q_OBJECT

public:
    explicit TemplateRequests(BottleEngine* engine, QObject* parent = nullptr);

    void recreate(const Reply& reply);

Q_SIGNALS:
    /// What is being done, a line for people.
    void progress(const QString& line);
    /// How much of a template that somebody waits for is done: 0 to 100, never less than before.
    void preparing(const QString& runner, int percent);

private:
    void next();
    void onMade(const Reason& reason);
    void renewBottles();
    void onRenewed(const Answer& answer);
    void leaveIfDone();

    BottleEngine* m_engine;
    QVector<Reply> m_waiting;
    QStringList m_runners;  ///< still to do
    Reason m_faults;
    QElapsedTimer m_elapsed;
    int m_bottles = 0;  ///< that are not yet up to date
};
