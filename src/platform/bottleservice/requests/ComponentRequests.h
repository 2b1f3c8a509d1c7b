#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QVector>

#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class ComponentInstall;
class Downloads;
class InstallJob;

/// The requests about components: what there is for the machine, and which of it a bottle uses. A component
/// that is not there yet is fetched first, once for all who want it.
class ComponentRequests : public QObject {
    Q_OBJECT

public:
    ComponentRequests(BottleEngine* engine, Downloads* downloads, const QString& catalogueDir,
                      QObject* parent = nullptr);

    Answer list() const;
    /// Answers {"ok": bool} when it is done.
    void install(const QString& kind, const QString& name, const Reply& reply);
    /// Takes back one install() of the component. When nobody else wants it, its download ends, and all of
    /// them are answered.
    void cancelInstall(const QString& kind, const QString& name, const Reply& reply);

    /// Answers when it is known whether programs run in the bottle, which refuse it; setupDone() tells how it
    /// ended. The version "-" takes DXVK or VKD3D out of a bottle. The last request of a kind that is not
    /// refused counts: it cancels those before it.
    void setComponent(const QString& bottle, const QString& kind, const QString& version, const Reply& reply);
    /// Answers with a JSON object, component to "DOWNLOADING" or "SETUPING".
    void installing(const QString& bottle, const QString& kind, const Reply& reply);
    void cancel(const QString& bottle, const QString& kind, const QString& name, const Reply& reply);
    /// Gives up all that is going on for a bottle.
    void cancelAll(const QString& bottle);

    /// Ends all fetching; the service ends.
    void close();

    bool isIdle() const { return m_installs.isEmpty() && m_changes.isEmpty(); }

Q_SIGNALS:
    void progress(const QString& kind, const QString& name, qint64 received, qint64 total);
    /// Without a reason it is a success.
    void installed(const QString& kind, const QString& name, const Reason& reason);
    void catalogueChanged(const QString& catalogue);
    void waiting(const QString& bottle, const QString& kind, const QString& name);
    void setupStarted(const QString& bottle, const QString& kind, const QString& name);
    /// Of two requests for the same component, of which the first was cancelled, only the second is told.
    void setupDone(const QString& bottle, const QString& kind, const QString& name, const Answer& result);

private:
    /// A component on its way into a bottle.
    struct Change {
        enum State { Checking, Downloading, SettingUp };

        int id;
        QString bottle;
        QString kind;
        QString name;
        Reply reply;
        State state = Checking;
        bool isCancelled = false;  ///< what its job has begun is being rolled back
        QPointer<InstallJob> job;
    };
    struct Install {
        ComponentInstall* work = nullptr;
        QVector<Reply> replies;
        int cancelled = 0;  ///< how many of them want it no more
    };

    Sources sources() const;
    void fetch(const QString& kind, const QString& name);
    void onFetched(const QString& kind, const QString& name, const Reason& reason);
    void answerInstall(const Install& install, const QString& kind, const QString& name,
                       const Reason& reason);
    void onLooked(int id, const QStringList& running);
    void setUp(Change* change);
    Change* find(int id);
    Change* last(const QString& bottle, const QString& kind);
    void end(int id, const Answer& result);
    void cancelBefore(const Change& last);
    void cancelChange(int id, const Reason& why);
    void cancelDownload(const QString& kind, const QString& name);

    BottleEngine* m_engine;
    Downloads* m_downloads;
    QString m_catalogueDir;
    ComponentStore m_store;
    QHash<QString, Install> m_installs;  ///< by kind and name
    QVector<Change> m_changes;           ///< in the order of the requests
    int m_lastId = 0;
};
