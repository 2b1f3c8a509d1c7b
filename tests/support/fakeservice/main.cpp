#include <QCoreApplication>
#include <QTextStream>
#include <QThread>

#include "support/fakeservice/FakeService.h"

namespace {

/// A fake that was killed a moment ago may still hold the name until the bus notices.
bool registerName(QDBusConnection& bus, const QString& name) {
    for (int i = 0; i < 100; ++i) {
        if (bus.registerService(name))
            return true;
        QThread::msleep(20);
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", &app,
                SLOT(quit()));
    FakeService service(bus);
    FakeServiceControl control(&service);
    if (!registerName(bus, "com.lumora.Test.FakeService") ||
        !bus.registerObject("/com/lumora/Test/Control", &control, QDBusConnection::ExportAllSlots)) {
        QTextStream(stderr) << "can't register on the bus: " << bus.lastError().message() << "\n";
        return 1;
    }
    if (!app.arguments().contains("--nameless") && !service.takeName("com.lumora.LumoraWineLauncher")) {
        QTextStream(stderr) << "another service holds the name\n";
        return 1;
    }
    QTextStream(stdout) << "ready\n" << Qt::flush;
    return app.exec();
}
