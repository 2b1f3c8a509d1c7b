#include "store/client/LocalStore.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QHostAddress>
#include <QProcess>
#include <QTimer>
#include <QUrl>

#include "core/base/Paths.h"
#include "store/client/VeskClientApiLogger.h"

namespace LocalStore {

namespace {

const char Name[] = "com.lumora.Cellarix.Store";
const char Path[] = "/com/lumora/Cellarix/Store";

bool isOwnMachine(const QString& address) {
    const QUrl url(address, QUrl::StrictMode);
    return url.scheme() == "http" && QHostAddress(url.host()).isLoopback() && url.port() > 0 &&
           url.userInfo().isEmpty();
}

/// The bus knows no store, or that of another installation.
bool isNotStarted(const QString& error) {
    return error == "org.freedesktop.DBus.Error.ServiceUnknown" ||
           error.startsWith("org.freedesktop.DBus.Error.Spawn.");
}

/// Asks the store for its address, and starts it when the bus can't. Deletes itself.
class Inquiry : public QObject {
public:
    Inquiry(QObject* context, const std::function<void(const QString&)>& then)
        : QObject(context),
          m_then(then),
          m_owner(Name, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration) {
        connect(&m_owner, &QDBusServiceWatcher::serviceRegistered, this, &Inquiry::ask);
        m_limit.setSingleShot(true);
        connect(&m_limit, &QTimer::timeout, this, [this] { end({}, "it does not answer"); });
        m_limit.start(StartMs);
        ask();
    }

private:
    void ask() {
        const QDBusMessage call = QDBusMessage::createMethodCall(Name, Path, Name, "address");
        const QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(call, StartMs);
        // Without a bus the call has failed already, and its watcher never emits finished().
        if (pending.isFinished()) {
            QTimer::singleShot(0, this, [this, pending] { take(pending.reply()); });
            return;
        }
        auto* watcher = new QDBusPendingCallWatcher(pending, this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            watcher->deleteLater();
            take(watcher->reply());
        });
    }

    void take(const QDBusMessage& reply) {
        const QString address = reply.arguments().value(0).toString();
        if (reply.type() != QDBusMessage::ErrorMessage)
            end(address, isOwnMachine(address) ? QString() : "its address is no address of this machine");
        else if (!isNotStarted(reply.errorName()))
            end({}, reply.errorMessage());
        else if (!m_isStarted)
            start();
        // else its name has yet to appear
    }

    void start() {
        m_isStarted = true;
        if (!QProcess::startDetached(Paths::storeServer(), {"--session"}))
            end({}, Paths::storeServer() + " cannot be started");
    }

    void end(const QString& address, const QString& error) {
        if (m_isEnded)
            return;
        m_isEnded = true;
        deleteLater();
        if (!error.isEmpty())
            qCWarning(VeskHttpClient::httpLog).noquote() << "the local store is not there:" << error;
        m_then(error.isEmpty() ? address : QString());
    }

    std::function<void(const QString&)> m_then;
    QDBusServiceWatcher m_owner;
    QTimer m_limit;
    bool m_isStarted = false;
    bool m_isEnded = false;
};

}  // namespace

QString placeholder() {
    return QStringLiteral("cellarix-store:");
}

bool isMeant(const QString& url) {
    return url.startsWith(placeholder());
}

void resolve(const QString& url, QObject* context, const std::function<void(const QString&)>& then) {
    const QString rest = url.mid(placeholder().size());
    new Inquiry(context, [rest, then](const QString& address) {
        then(address.isEmpty() ? QString() : address + rest);
    });
}

}  // namespace LocalStore
