#pragma once

#include <QHash>
#include <QObject>
#include <memory>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class Job;

/// The requests about bottles as a whole: which there are, their records, making and deleting them. Reading
/// answers at once and never waits for a queue. Owned by BottleService; lives in the main thread.
class BottleRequests : public QObject {
    Q_OBJECT

public:
    explicit BottleRequests(BottleEngine* engine, QObject* parent = nullptr);

    /// A JSON array of names.
    Answer list() const;
    /// The bottle's record as JSON: bottle.yml with "Path". Also renews a launch.json that is out of date.
    Answer get(const QString& bottle) const;
    /// See Emulators.
    Answer getEmulators(const QString& bottle) const;
    /// The name of the shared bottle for a file, or an empty text. See PublicBottles.
    Answer checkPublicBottles(const QString& queryJson) const;
    /// Answers with the version that the runner's Wine prints; the result is kept while its file stays the
    /// same.
    void getRunnerVersion(const QString& runner, const Reply& reply);

    /// See CreateBottleJob; an empty runner is the default one.
    void createBottles(const QString& bottle, const QString& runner, const Reply& reply);
    void deleteBottle(const QString& bottle, const Reply& reply);
    /// The job of deleteBottle(), for a job of that bottle which has decided to delete it.
    std::unique_ptr<Job> makeDeletion(const QString& bottle, const Reply& reply);

Q_SIGNALS:
    /// All other work on the bottle is to be cancelled.
    void aboutToDelete(const QString& bottle);
    void bottleDeleted(const QString& bottle);

private:
    BottleEngine* m_engine;
    QHash<QString, QString> m_versions;  ///< by path, time and size of the Wine
};
