#pragma once

#include <QDateTime>
#include <QString>

/// The time, as names of exported files and of logs have it.
inline QString nowInFileName() {
    return QDateTime::currentDateTime().toString("yyyy-MM-dd_HH-mm-ss");
}
