#pragma once

#include <QHash>
#include <QObject>
#include <QVector>

#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class ComponentInstall;
class Downloads;

/// The requests about the components of this machine (runners, DXVK, VKD3D): which there are, and bringing
/// new ones. A component is fetched once for all who want it. Owned by BottleService; lives in the main
/// thread.
class ComponentRequests : public QObject {
    Q_OBJECT

public:
    ComponentRequests(BottleEngine* engine, Downloads* downloads, const QString& catalogueDir,
                      QObject* parent = nullptr);

    const ComponentStore& store() const { return m_store; }

    /// See ComponentStore::catalogue().
    Answer list() const;
    /// Answers {"ok": bool} when it is done.
    void install(const QString& kind, const QString& name, const Reply& reply);
    /// Cancels one install() of the component. When nobody else wants it, its download ends, and all of them
    /// are answered.
    void cancelInstall(const QString& kind, const QString& name, const Reply& reply);

    /// Fetches a component for a bottle; fetched() follows.
    void obtain(const QString& kind, const QString& name);
    /// Cancels one obtain(). When nobody else wants the component, its download ends without fetched().
    void release(const QString& kind, const QString& name);

    /// Ends all downloads; the service ends.
    void close();

    bool isIdle() const { return m_installs.isEmpty(); }

Q_SIGNALS:
    /// In bytes; total is 0 while it is not known.
    void progress(const QString& kind, const QString& name, qint64 received, qint64 total);
    /// An empty reason is success.
    void installed(const QString& kind, const QString& name, const Reason& reason);
    void catalogueChanged(const QString& catalogue);
    /// Follows installed(), for those who called obtain().
    void fetched(const QString& kind, const QString& name, const Reason& reason);

private:
    struct Install {
        ComponentInstall* work = nullptr;
        QVector<Reply> replies;
        int cancelled = 0;  ///< how many of the replies do not want it any more
        int bottles = 0;    ///< how many want it for a bottle
    };

    Sources sources() const;
    void fetch(const QString& kind, const QString& name);
    void onFetched(const QString& kind, const QString& name, const Reason& reason);
    void answerInstall(const Install& install, const QString& kind, const QString& name,
                       const Reason& reason);
    void cancelUnwanted(const QString& kind, const QString& name);

    BottleEngine* m_engine;
    Downloads* m_downloads;
    QString m_catalogueDir;
    ComponentStore m_store;
    QHash<QString, Install> m_installs;  ///< by kind and name
};
