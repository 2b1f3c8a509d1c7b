#pragma once

#include <QList>
#include <QString>

namespace StoreServer {

/// What is wrong with a file of the store's directory, whose path below that directory is `file`. The
/// sentence starts with line and column where the fault has a place.
struct Fault {
    QString file;
    QString sentence;

    QString toString() const { return file + ": " + sentence; }
};

using Faults = QList<Fault>;

}  // namespace StoreServer
