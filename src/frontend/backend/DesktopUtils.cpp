#include "backend/DesktopUtils.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QStandardPaths>
#include <QUrl>

namespace {

const char Notifications[] = "org.freedesktop.Notifications";
const char AppStore[] = "com.home.appstore.client";
constexpr int NotifyMs = 5000;  // the bus may have to start the service

QDBusMessage notificationCall(const QString& method) {
    return QDBusMessage::createMethodCall(Notifications, "/org/freedesktop/Notifications", Notifications,
                                          method);
}

}  // namespace

bool DesktopUtils::notify(const QString& title, const QString& body, const QStringList& actions,
                          const QVariantMap& hints) {
    const int expiryMs = 3000;
    QDBusMessage call = notificationCall("Notify");
    call << "cellarix" << 0U << "cellarix" << title << body << actions << hints << expiryMs;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, NotifyMs);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return true;
    qWarning().noquote() << "Failed to send notification:" << reply.errorMessage();
    return false;
}

QString DesktopUtils::notificationText(const QString& name) {
    // Other names are the same in both cases, without a call.
    if (!name.contains('&') && !name.contains('<'))
        return name;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(notificationCall("GetCapabilities"));
    const bool isMarkup = reply.arguments().value(0).toStringList().contains("body-markup");
    return isMarkup ? name.toHtmlEscaped() : name;
}

void DesktopUtils::showInFileManager(const QString& path) {
    const QString service = "org.freedesktop.FileManager1";
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // An interface of a service that could be started but isn't running yet counts as invalid.
    if (bus.interface() && !bus.interface()->isServiceRegistered(service))
        bus.interface()->startService(service);
    QDBusInterface manager(service, "/org/freedesktop/FileManager1", service, bus);
    if (!manager.isValid()) {
        qWarning().noquote() << "no file manager to show" << path;
        return;
    }
    const QString url = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    manager.call(QDBus::Block, "ShowItems", QStringList{url}, QString(""));
    const QDBusError error = manager.lastError();
    if (error.isValid())
        qWarning().noquote() << QString("failed, Type: %1 MSG: %2").arg(error.type()).arg(error.message());
}

QString DesktopUtils::appStorePackage(const QString& packageId) {
    return packageId == "ge-proton9" ? QStringLiteral("lumora-ge-proton9") : packageId;
}

void DesktopUtils::openInAppStore(const QString& packageId, QObject* context,
                                  const std::function<void()>& onFailed) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(AppStore, "/com/home/appstore/client", AppStore, "openBusinessUri");
    // No path or query of the store's own.
    const QByteArray page = QUrl::toPercentEncoding(appStorePackage(packageId), "+");
    call << "app_detail_info/" + QString::fromLatin1(page);
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher] {
        watcher->deleteLater();
        if (watcher->isError())
            qWarning("open app store failed");
    });
    if (context && onFailed)
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                         [onFailed](QDBusPendingCallWatcher* ended) {
                             if (ended->isError())
                                 onFailed();
                         });
}

bool DesktopUtils::hasAppStore() {
    for (const char* method : {"ListNames", "ListActivatableNames"}) {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method));
        if (reply.arguments().value(0).toStringList().contains(AppStore))
            return true;
    }
    return false;
}

bool DesktopUtils::hasDesktopShortcut(const QString& name) {
    return hasDesktopShortcut(name, QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
}

// Not a name filter of QDir: a program may be called "Tool [x64]", which is a pattern there.
bool DesktopUtils::hasDesktopShortcut(const QString& name, const QString& desktopDirectory) {
    const QString suffix = ".desktop";
    for (const QString& file : QDir(desktopDirectory).entryList(QDir::Files)) {
        if (file.endsWith(suffix, Qt::CaseInsensitive) &&
            file.chopped(suffix.size()).contains(name, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

void DesktopUtils::openLocal(const QString& path) {
    if (path.isEmpty() || !QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        qWarning().noquote() << "can't open" << path;
}
