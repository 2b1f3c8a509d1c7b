#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class DependencyRequests;
class Downloads;
struct Source;

/// The requests about repairs before they are made: what an installation would bring, and files that the user
/// has got by hand because they could not be fetched.
class RepairOfferRequests : public QObject {
    Q_OBJECT

public:
    RepairOfferRequests(BottleEngine* engine, Downloads* downloads, DependencyRequests* dependencies,
                        QObject* parent = nullptr);
    ~RepairOfferRequests() override;

    /// Removes what a killed service has left half copied. Once, before the first request.
    void recover();

    /// Answers with an array that tells of each name; see the interface's file. Changes nothing and uses no
    /// network.
    void describe(const QString& bottle, const QString& kind, const QStringList& names, const Reply& reply);

    /// {"installed": [...], "supported": [...]}: the runners that run 32-bit programs on this machine, and
    /// those that would after they have been fetched.
    Answer runnersFor32Bit() const;

    /// Takes the file if it is one of those that the component is installed from. Answers when it is copied.
    void takeFile(const QString& bottle, const QString& dependency, const QString& path, const Reply& reply);

    bool isIdle() const { return m_running == 0; }
    /// Ends the copying; the service ends.
    void close() { *m_cancelled = true; }

private:
    QJsonObject dependency(const QString& bottle, const QString& name) const;
    QJsonObject runner(const QString& name) const;
    QJsonObject fileOf(const Source& source) const;

    BottleEngine* m_engine;
    Downloads* m_downloads;
    DependencyRequests* m_dependencies;
    int m_running = 0;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
