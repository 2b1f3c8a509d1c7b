#pragma once

#include <QStringList>
#include <string>

#include "storeserver/request/StoreAddress.h"

namespace StoreServer {

/// What the process is told to do.
struct Options {
    enum class Task { Serve, ServeSession, Check, ListReports, Help, Version };

    Task task = Task::Serve;
    QString data;  ///< the store's directory
    std::string host;
    int port = 0;
    StoreAddress publicAddress;  ///< where clients reach the store, if it is not where they say
    int threads = 1;
    QString reports;      ///< the directory of reports; empty if none are taken
    int reportsMiB = 0;   ///< what may be in it
    int idleSeconds = 0;  ///< of a session, after which the process ends; 0 is never

    QString error;     ///< why the arguments make no sense; empty if they do
    QString helpText;  ///< for Help
};

/// `arguments` start with the program's name, `starterData` is the directory that is served without --data.
Options parseOptions(const QStringList& arguments, const QString& starterData);

}  // namespace StoreServer
