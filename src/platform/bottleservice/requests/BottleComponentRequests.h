#pragma once

#include <QObject>
#include <QPointer>
#include <QVector>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class ComponentRequests;
class InstallJob;

/// The requests about the components that a bottle uses: its runner, DXVK and VKD3D. A component that is not
/// on the machine yet is fetched first (ComponentRequests). Owned by BottleService; lives in the main thread.
class BottleComponentRequests : public QObject {
    Q_OBJECT

public:
    BottleComponentRequests(BottleEngine* engine, ComponentRequests* components, QObject* parent = nullptr);

    /// Answers when it is known whether programs run in the bottle, in which case it fails with Busy;
    /// setupDone() tells the result. The version "-" removes DXVK or VKD3D from a bottle. Of several requests
    /// of a kind the last one that is accepted counts: it cancels those before it.
    void setComponent(const QString& bottle, const QString& kind, const QString& version, const Reply& reply);
    /// Answers with a JSON object, component to "DOWNLOADING" or "SETUPING".
    void installing(const QString& bottle, const QString& kind, const Reply& reply);
    void cancel(const QString& bottle, const QString& kind, const QString& name, const Reply& reply);
    /// Cancels all requests for a bottle.
    void cancelAll(const QString& bottle);

    bool isIdle() const { return m_changes.isEmpty(); }

Q_SIGNALS:
    void waiting(const QString& bottle, const QString& kind, const QString& name);
    void setupStarted(const QString& bottle, const QString& kind, const QString& name);
    /// When the same component is requested again after a cancel, only the end of the second request is told.
    void setupDone(const QString& bottle, const QString& kind, const QString& name, const Answer& result);

private:
    struct Change {
        enum State { Checking, Downloading, SettingUp };

        int id;
        QString bottle;
        QString kind;
        QString name;
        Reply reply;
        State state = Checking;
        bool isCancelled = false;  ///< its job is being rolled back
        QPointer<InstallJob> job;
    };

    void onProgramsKnown(int id, const QStringList& running);
    void onFetched(const QString& kind, const QString& name, const Reason& reason);
    void setUp(Change* change);
    Change* find(int id);
    Change* lastChange(const QString& bottle, const QString& kind);
    void end(int id, const Answer& result);
    void cancelBefore(const Change& last);
    void cancelChange(int id, const Reason& why);

    BottleEngine* m_engine;
    ComponentRequests* m_components;
    QVector<Change> m_changes;  ///< in the order of the requests
    int m_lastId = 0;
};
