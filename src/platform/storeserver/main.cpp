#include <malloc.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDebug>
#include <QTextCodec>
#include <csignal>
#include <iostream>

#include "fenk/system/UnixSignals.h"
#include "storeserver/DirectoryCheck.h"
#include "storeserver/Options.h"
#include "storeserver/Server.h"
#include "storeserver/SessionLife.h"
#include "storeserver/reports/ReportList.h"
#include "storeserver/wire/StoreObject.h"

using namespace StoreServer;

namespace {

constexpr int WrongArguments = 2;
constexpr int KeptBytes = 4 * 1024 * 1024;

int serve(Server& server) {
    const QString error = server.start();
    if (!error.isEmpty()) {
        qCritical().noquote() << error;
        return 1;
    }
    qInfo() << "listening on" << server.address().c_str();
    return QCoreApplication::exec();
}

/// A store that cannot start yet still answers on the bus, with the reason, and tries again at each call.
int serveSession(QCoreApplication& application, Server& server, int idleSeconds) {
    const QString error = server.start();
    if (!error.isEmpty())
        qCritical().noquote() << error;
    QDBusConnection bus = QDBusConnection::sessionBus();
    StoreObject object([&server](QString* reason) {
        server.touch();
        *reason = server.start();
        return reason->isEmpty() ? QString::fromStdString(server.address()) : QString();
    });
    if (!object.registerOn(bus)) {
        qCritical() << "cannot be the store of this session:" << bus.lastError().message();
        return 1;
    }
    SessionLife life(server.activity(), idleSeconds);
    QObject::connect(&life, &SessionLife::leaving, &application,
                     [&bus] { StoreObject::unregisterFrom(bus); });
    QObject::connect(&life, &SessionLife::left, &application, &QCoreApplication::quit);
    // The bus disconnects at the end of the session.
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", &application,
                SLOT(quit()));
    return QCoreApplication::exec();
}

int run(QCoreApplication& application, const Options& options) {
    Server server(options);
    Fenk::UnixSignals signals({SIGTERM, SIGINT, SIGHUP}, Fenk::UnixSignals::Repeated::Received);
    QObject::connect(&signals, &Fenk::UnixSignals::received, &application, [&] {
        if (signals.lastReceived() == SIGHUP && options.task == Options::Task::Serve)
            server.refresh();
        else
            QCoreApplication::quit();
    });
    return options.task == Options::Task::Serve ? serve(server)
                                                : serveSession(application, server, options.idleSeconds);
}

}  // namespace

int main(int argc, char** argv) {
    // Answers come and go all the time; their memory need not go back to the system in between.
    mallopt(M_TRIM_THRESHOLD, KeptBytes);
    mallopt(M_TOP_PAD, KeptBytes / 4);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("cellarix-store-server");
    QCoreApplication::setApplicationVersion(CELLARIX_VERSION);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    qSetMessagePattern("%{type}: %{message}");

    const Options options = parseOptions(QCoreApplication::arguments(), CELLARIX_STORE_DATA);
    if (!options.error.isEmpty()) {
        std::cerr << options.error.toStdString() << '\n';
        return WrongArguments;
    }
    try {
        switch (options.task) {
            case Options::Task::Help:
                std::cout << options.helpText.toStdString();
                return 0;
            case Options::Task::Version:
                std::cout << "cellarix-store-server " CELLARIX_VERSION "\n";
                return 0;
            case Options::Task::Check:
                return checkDirectory(options.data, std::cout);
            case Options::Task::ListReports:
                return listReports(options.reports, std::cout);
            case Options::Task::Serve:
            case Options::Task::ServeSession:
                return run(application, options);
        }
    } catch (const std::exception& error) {
        qCritical() << "the store cannot be served:" << error.what();
    }
    return 1;
}
