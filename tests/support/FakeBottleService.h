#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVector>
#include <memory>

#include "support/ChildProcess.h"

namespace TestSupport {

/// One call as the fake received it.
struct RecordedCall {
    QString path;
    QString interface;
    QString method;
    QString signature;
    QJsonArray arguments;
};

/// A fake of the background service, in a process of its own on the session bus of the environment. It
/// records all calls and answers as set here; see Scenario.h for keys and answers. Without settings it
/// answers like a service that runs and has no bottle.
class FakeBottleService {
public:
    /// Starts the process. A nameless one comes to the bus but does not take the service's name until
    /// takeName().
    bool start(bool nameless = false);
    /// Ends the process at once, as a crash does.
    void kill();
    bool isRunning() const { return m_process && m_process->state() == QProcess::Running; }
    bool waitUntilGone(int timeoutMs = 10000) {
        return waitUntil([this] { return !isRunning(); }, timeoutMs);
    }
    /// Takes a name on the bus, also that of one of the desktop's services.
    bool takeName(const QString& name = "com.lumora.LumoraWineLauncher");

    void setText(const QString& key, const QString& text) { setAnswers(key, {{{"text", text}}}); }
    void setJson(const QString& key, const QJsonObject& object);
    void setJson(const QString& key, const QJsonArray& array);
    void setError(const QString& key, const QString& message) { setAnswers(key, {{{"error", message}}}); }
    /// The process ends in the middle of the call.
    void setVanish(const QString& key) { setAnswers(key, {{{"vanish", true}}}); }
    /// The call stays open until release().
    void setHeld(const QString& key, const QString& text) {
        setAnswers(key, {{{"text", text}, {"hold", true}}});
    }
    void setLate(const QString& key, const QString& text, int ms) {
        setAnswers(key, {{{"text", text}, {"delay", ms}}});
    }
    void setAnswers(const QString& key, const QVector<QJsonObject>& answers);
    /// The record that get answers for one bottle.
    void setBottle(const QString& bottle, const QJsonObject& record) {
        setJson("Bottles.get:" + bottle, record);
    }

    /// Answers held calls; returns how many.
    int release(const QString& method = {});

    QVector<RecordedCall> calls();
    QVector<RecordedCall> calls(const QString& method);
    /// Turns the event loop until the method was called that often; the last such call, or one without a
    /// method name.
    RecordedCall waitForCall(const QString& method, int times = 1, int timeoutMs = 10000);
    void clearCalls() { control("ClearCalls"); }

    /// Emits a signal of the bottle interface. The signature has a letter per argument: s, b, i, u, x.
    bool emitSignal(const QString& name, const QString& signature, const QJsonArray& arguments);
    bool emitSignal(const QString& path, const QString& interface, const QString& name,
                    const QString& signature, const QJsonArray& arguments);

private:
    QVariant control(const QString& method, const QVariantList& arguments = {});

    std::unique_ptr<ChildProcess> m_process;
};

}  // namespace TestSupport
