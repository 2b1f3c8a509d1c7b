#include "shell/configuration/hints/SteamRuntime.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDebug>

namespace {
constexpr int AnswerMs = 5000;
}

void SteamRuntime::terminate(QObject* context, const std::function<void(bool ended)>& then) {
    qInfo("Seems steam runtime has error, try to kill it");
    QDBusMessage call = QDBusMessage::createMethodCall(
        "com.lumora.SteamRuntimeService", "/com/steampowered/PressureVessel/Launcher1",
        "com.steampowered.PressureVessel.Launcher1", "Terminate");
    call.setAutoStartService(false);
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, AnswerMs), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [then](QDBusPendingCallWatcher* answered) {
                         answered->deleteLater();
                         const bool isEnded = !answered->isError();
                         if (isEnded)
                             qInfo("Kill steam runtime success");
                         else
                             qWarning("Kill steam runtime failed");
                         then(isEnded);
                     });
}
