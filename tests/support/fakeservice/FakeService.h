#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QJsonArray>
#include <QList>

#include "support/fakeservice/Scenario.h"

/// Answers every call to the bottle service and the desktop's services from the scenario and records it.
/// Calls of the bottle interface with a wrong name or signature are refused, as the real one would.
class FakeService : public QDBusVirtualObject {
    Q_OBJECT
public:
    explicit FakeService(const QDBusConnection& connection);

    bool takeName(const QString& name) { return m_connection.registerService(name); }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    Scenario& scenario() { return m_scenario; }
    QJsonArray calls() const { return m_calls; }
    void clearCalls() { m_calls = {}; }
    /// Answers the held calls of a method, or of all methods for an empty name.
    int release(const QString& method);
    bool emitSignal(const QString& path, const QString& interface, const QString& name,
                    const QString& signature, const QJsonArray& arguments);

private:
    void record(const QDBusMessage& message);
    void answer(const QDBusMessage& message, const QJsonObject& answer);
    void send(const QDBusMessage& message, const QJsonObject& answer);

    struct Held {
        QDBusMessage message;
        QJsonObject answer;
    };

    QDBusConnection m_connection;
    Scenario m_scenario;
    QJsonArray m_calls;
    QList<Held> m_held;
};

/// com.lumora.Test.Control: the test controls the fake with it, whether or not the fake has the service's
/// name.
class FakeServiceControl : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.lumora.Test.Control")
public:
    explicit FakeServiceControl(FakeService* service) : m_service(service) {}

public Q_SLOTS:
    bool TakeName(const QString& name) { return m_service->takeName(name); }
    bool SetAnswers(const QString& key, const QString& answers);
    QString Calls() const;
    void ClearCalls() { m_service->clearCalls(); }
    int Release(const QString& method) { return m_service->release(method); }
    bool EmitSignal(const QString& path, const QString& interface, const QString& name,
                    const QString& signature, const QString& arguments);

private:
    FakeService* m_service;
};
