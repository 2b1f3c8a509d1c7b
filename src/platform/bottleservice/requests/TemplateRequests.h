#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QVector>

#include "bottleservice/result/Answer.h"

class BottleEngine;
struct Runner;

/// Makes the templates of all runners again, one after the other, and then updates the bottles of runners
/// that have changed. Old templates are used until the new ones are complete. A request that comes meanwhile
/// joins the running work; each gets an answer at its end, a failure when a template could not be made. Owned
/// by BottleService; lives in the main thread.
class TemplateRequests : public QObject {
    Q_OBJECT

public:
    explicit TemplateRequests(BottleEngine* engine, QObject* parent = nullptr);

    void recreate(const Reply& reply);

Q_SIGNALS:
    /// A line about the progress, for people.
    void progress(const QString& line);
    /// The progress of a template that somebody waits for: 0 to 100, never decreasing.
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
