#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Reason.h"

class Downloads;
class FileFetch;
class Reclaimer;

/// Installs one component on the machine: fetches its archive, unpacks it under a hidden name and renames it
/// when it is complete. Its files are read-only from then on, since bottles link to them. Owned by
/// ComponentRequests; lives in the main thread.
class ComponentInstall : public QObject {
    Q_OBJECT

public:
    ComponentInstall(const ComponentStore& store, const Sources& sources, Downloads* downloads,
                     Reclaimer* reclaimer, const QString& kind, const QString& name,
                     QObject* parent = nullptr);
    ~ComponentInstall() override;

    void start();
    void cancel();

Q_SIGNALS:
    /// In bytes; total is 0 while it is not known.
    void progress(qint64 received, qint64 total);
    /// Exactly once, never from start() itself; an empty reason is success.
    void finished(const Reason& reason);

private:
    void unpack();
    void onUnpacked(const Reason& reason);
    void finish(const Reason& reason);

    ComponentStore m_store;
    Sources m_sources;
    Downloads* m_downloads;
    Reclaimer* m_reclaimer;
    QString m_kind;
    QString m_name;
    QString m_archive;
    QString m_directory;
    FileFetch* m_fetch = nullptr;
    bool m_done = false;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
