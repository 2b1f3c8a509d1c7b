#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class DependencyRequests;
class Downloads;
class Sources;
struct InstallPlan;
struct Source;

/// The requests that come before a repair: what an installation would need, and files that the user has got
/// by hand because they could not be fetched. Owned by BottleService; lives in the main thread.
class RepairOfferRequests : public QObject {
    Q_OBJECT

public:
    RepairOfferRequests(BottleEngine* engine, Downloads* downloads, DependencyRequests* dependencies,
                        QObject* parent = nullptr);
    ~RepairOfferRequests() override;

    /// Removes unfinished copies of a service that was killed. Call once, before the first request.
    void recover();

    /// Answers with an array that describes each name; see the interface's XML file. Changes nothing and does
    /// not use the network.
    void describe(const QString& bottle, const QString& kind, const QStringList& names, const Reply& reply);

    /// {"installed": [...], "supported": [...]}: the runners that run 32-bit programs on this machine, and
    /// those that would once they are fetched.
    Answer runnersFor32Bit() const;

    /// Takes the file if the component is installed from it (ChosenFile). Answers when it has been copied.
    void takeFile(const QString& bottle, const QString& dependency, const QString& path, const Reply& reply);

    bool isIdle() const { return m_running == 0; }
    /// Ends copying; the service ends.
    void close() { *m_cancelled = true; }

private:
    QJsonObject dependency(const QString& name, const InstallPlan& plan, const Sources& sources) const;
    QJsonObject runner(const QString& name, const Sources& sources) const;
    QJsonObject fileOf(const Source& source) const;

    BottleEngine* m_engine;
    Downloads* m_downloads;
    DependencyRequests* m_dependencies;
    int m_running = 0;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
