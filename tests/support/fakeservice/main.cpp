#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTextStream>
#include <QThread>

#include "support/fakeservice/FakeService.h"

namespace {

/// A scenario file is one object, key to answer, for a fake that the bus starts by itself.
bool loadScenario(const QString& path, FakeService& service) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonObject answers = QJsonDocument::fromJson(file.readAll()).object();
    for (auto it = answers.begin(); it != answers.end(); ++it)
        service.scenario().set(it.key(), {it.value().toObject()});
    return !answers.isEmpty();
}

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
    const QStringList arguments = app.arguments();
    QTextStream errors(stderr);

    QDBusConnection bus = QDBusConnection::sessionBus();
    // A fake that the bus started is nobody's child here; it must go with its bus.
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", &app,
                SLOT(quit()));
    FakeService service(bus);
    FakeServiceControl control(&service);
    const int scenario = arguments.indexOf("--scenario");
    if (scenario > 0 && !loadScenario(arguments.value(scenario + 1), service)) {
        errors << "can't read the scenario " << arguments.value(scenario + 1) << "\n";
        return 1;
    }
    if (!registerName(bus, "com.lumora.Test.FakeService") ||
        !bus.registerObject("/com/lumora/Test/Control", &control, QDBusConnection::ExportAllSlots)) {
        errors << "can't register on the bus: " << bus.lastError().message() << "\n";
        return 1;
    }
    if (!arguments.contains("--nameless") && !service.takeName()) {
        errors << "another service holds the name\n";
        return 1;
    }
    QTextStream(stdout) << "ready\n" << Qt::flush;
    return app.exec();
}
