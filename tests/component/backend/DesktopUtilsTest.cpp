#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QThread>
#include <QtTest>

#include "backend/DesktopUtils.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"

using TestSupport::LogCapture;

/// The desktop's own services, recording. They live in a thread with a bus connection of its own, since the
/// calls block.
class NotificationService : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QVariantList received;
    bool refuse = false;
public Q_SLOTS:
    uint Notify(const QString& application, uint replaces, const QString& icon, const QString& title,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int expiry) {
        received = {application, replaces, icon, title, body, actions, hints, expiry};
        if (refuse)
            sendErrorReply(QDBusError::LimitsExceeded, "too many");
        return 1;
    }
};

class FileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    QVariantList received;
    bool refuse = false;
public Q_SLOTS:
    void ShowItems(const QStringList& items, const QString& startupId) {
        received = {items, startupId};
        if (refuse)
            sendErrorReply(QDBusError::Failed, "no display");
    }
};

class AppStore : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.home.appstore.client")
public:
    QStringList received;
public Q_SLOTS:
    void openBusinessUri(const QString& uri) {
        received.append(uri);
        Q_EMIT opened();
    }
Q_SIGNALS:
    void opened();
};

class DesktopUtilsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        desktop = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(bus.address(), "desktop"));
        QVERIFY(desktop->isConnected());
        for (QObject* service : {static_cast<QObject*>(&notifications), static_cast<QObject*>(&files),
                                 static_cast<QObject*>(&store)})
            service->moveToThread(&thread);
        thread.start();
    }
    void cleanupTestCase() {
        thread.quit();
        QVERIFY(thread.wait(5000));
        desktop.reset();
        QDBusConnection::disconnectFromBus("desktop");
    }

    void withoutADesktop() {
        const LogCapture log;
        DesktopUtils::notify("t", "b");
        QVERIFY(log.contains(QtWarningMsg, "Failed to send notification:"));
        DesktopUtils::showInFileManager("/tmp/x");
        DesktopUtils::openInAppStore("p");
        QVERIFY(log.contains(QtWarningMsg, "open app store failed"));
    }

    void notify() {
        const LogCapture log;
        provide("org.freedesktop.Notifications", "/org/freedesktop/Notifications", &notifications);
        DesktopUtils::notify("Title", "Body");
        QCOMPARE(notifications.received, (QVariantList{"cellarix", 0U, "cellarix", "Title", "Body",
                                                       QStringList(), QVariantMap(), 3000}));
        DesktopUtils::notify("Title", "Body", {"_open", "View"},
                             {{"x-lumora-action-_open", "cellarix,--fixup"}});
        QCOMPARE(notifications.received.at(5).toStringList(), (QStringList{"_open", "View"}));
        QCOMPARE(notifications.received.at(6).toMap().value("x-lumora-action-_open").toString(),
                 QString("cellarix,--fixup"));
        QVERIFY(log.lines().isEmpty());
        notifications.refuse = true;
        DesktopUtils::notify("Title", "Body");
        QVERIFY(log.contains(QtWarningMsg, "Failed to send notification: too many"));
    }

    void showInFileManager() {
        const LogCapture log;
        provide("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", &files);
        DesktopUtils::showInFileManager("/tmp/a b");
        QCOMPARE(files.received, (QVariantList{QStringList{"/tmp/a b"}, ""}));
        QVERIFY(log.lines().isEmpty());
        files.refuse = true;
        DesktopUtils::showInFileManager("/tmp/x");
        QVERIFY2(log.contains("MSG: no display"), qPrintable(log.text()));
    }

    void openInAppStore() {
        const LogCapture log;
        provide("com.home.appstore.client", "/com/home/appstore/client", &store);
        QSignalSpy opened(&store, &AppStore::opened);
        DesktopUtils::openInAppStore("ge-proton9");
        QTRY_COMPARE(opened.count(), 1);
        DesktopUtils::openInAppStore("lumora-box64");
        QTRY_COMPARE(opened.count(), 2);
        QCOMPARE(store.received,
                 (QStringList{"app_detail_info/lumora-ge-proton9", "app_detail_info/lumora-box64"}));
        QVERIFY(log.lines().isEmpty());
    }

private:
    void provide(const QString& name, const QString& path, QObject* object) {
        QVERIFY(desktop->registerObject(path, object, QDBusConnection::ExportAllSlots));
        QVERIFY(desktop->registerService(name));
    }

    TestSupport::PrivateBus bus;
    std::unique_ptr<QDBusConnection> desktop;
    NotificationService notifications;
    FileManager files;
    AppStore store;
    QThread thread;
};

QTEST_GUILESS_MAIN(DesktopUtilsTest)
#include "DesktopUtilsTest.moc"
