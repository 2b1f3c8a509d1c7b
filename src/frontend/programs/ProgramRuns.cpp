#include "programs/ProgramRuns.h"

#include <QDBusServiceWatcher>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "backend/InBackground.h"
#include "backend/RunningPrograms.h"
#include "launch/watch/RaiseWindow.h"
#include "launch/watch/X11Desktop.h"

namespace {

constexpr int RetryMs = 500;
constexpr int MostRetries = 5;

QJsonArray programsIn(const BusResult& result) {
    return QJsonDocument::fromJson(result.text.toUtf8()).array();
}

ProgramRef refOf(const QJsonObject& program) {
    return {program.value("bottle").toString(), program.value("program").toString()};
}

}  // namespace

ProgramRuns::ProgramRuns() {
    auto* service = RunningPrograms::instance();
    connect(service, &RunningPrograms::started, this, [this](const QString& bottle, const QString& uuid) {
        const ProgramRef ref{bottle, uuid};
        apply(ref, [this, ref] { m_running.insert(ref); });
    });
    connect(service, &RunningPrograms::ended, this, [this](const QString& bottle, const QString& uuid) {
        const ProgramRef ref{bottle, uuid};
        apply(ref, [this, ref] { m_running.remove(ref); });
    });
    m_retry.setSingleShot(true);
    m_retry.setInterval(RetryMs);
    connect(&m_retry, &QTimer::timeout, this, &ProgramRuns::load);
    auto* watcher = new QDBusServiceWatcher(
        service->service(), service->connection(),
        QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &ProgramRuns::load);
    // Nobody would report the ends of the programs.
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (!m_running.isEmpty())
            m_retry.start();
    });
}

void ProgramRuns::load() {
    if (m_isAsking)
        return;
    m_isAsking = true;
    m_retry.stop();
    RunningPrograms::instance()->watchRunning(this, [this](const BusResult& result) { onReply(result); });
}

/// Signals that were sent before the reply have arrived before it, so the reply is the newer state.
void ProgramRuns::onReply(const BusResult& result) {
    m_isAsking = false;
    if (!result.ok && result.serviceGone && m_retries < MostRetries) {
        ++m_retries;
        m_retry.start();
        return;
    }
    m_retries = 0;
    if (!result.ok)
        qWarning().noquote() << "which programs run is not known:" << result.errorMessage;
    QSet<ProgramRef> running;
    for (const QJsonValue& program : programsIn(result))
        running.insert(refOf(program.toObject()));
    replace(running);
}

void ProgramRuns::replace(const QSet<ProgramRef>& running) {
    const QSet<ProgramRef> known = m_running + running;
    for (const ProgramRef& ref : known) {
        apply(ref, [&] {
            if (running.contains(ref))
                m_running.insert(ref);
            else
                m_running.remove(ref);
        });
    }
}

bool ProgramRuns::isRunning(const QString& uuid) const {
    const auto isSame = [&uuid](const ProgramRef& ref) { return ref.uuid == uuid; };
    return std::any_of(m_running.begin(), m_running.end(), isSame) ||
           std::any_of(m_starting.begin(), m_starting.end(), isSame);
}

void ProgramRuns::setStarting(const ProgramRef& ref, bool on) {
    apply(ref, [&] {
        if (on)
            m_starting.insert(ref);
        else
            m_starting.remove(ref);
    });
}

void ProgramRuns::apply(const ProgramRef& ref, const std::function<void()>& change) {
    const bool before = isRunning(ref);
    change();
    if (isRunning(ref) != before)
        Q_EMIT changed(ref, !before);
}

void ProgramRuns::raiseWindow(const ProgramRef& ref, QObject* context,
                              const std::function<void(bool)>& then) {
    X11Desktop::prepareThreads();
    RunningPrograms::instance()->watchRunning(context, [ref, context, then](const BusResult& result) {
        QVector<qint64> pids;
        for (const QJsonValue& program : programsIn(result)) {
            if (refOf(program.toObject()) != ref)
                continue;
            for (const QJsonValue& pid : program.toObject().value("pids").toArray())
                pids << qint64(pid.toDouble());
        }
        inBackground(
            context, [pids] { return RaiseWindow::ofProcesses(pids); }, then);
    });
}
