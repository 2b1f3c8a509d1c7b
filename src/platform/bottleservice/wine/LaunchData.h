#pragma once

#include <QJsonObject>
#include <QString>

#include "bottleservice/wine/Runners.h"

/// The data that the launch script needs to start a program, kept as launch.json beside bottle.yml so that a
/// start needs neither a YAML parser nor a call on the bus:
///   {"version":1, "path", "runner", "wine", "wineserver", "emulator", "env":{name:value},
///    "source":{"size","mtime_ns"}, "programs":{uuid:{"name","path","folder","arguments","envs"}}}
/// Written after bottle.yml. When size or time of bottle.yml differ from "source", the file was edited by
/// hand and launch.json is out of date.
namespace LaunchData {

constexpr int Version = 1;

/// The environment variables for the settings of the bottle.
QJsonObject environment(const QString& bottlePath, const QJsonObject& record);

/// The content of the file without "source". Without a runner "wine" and "wineserver" are empty.
QJsonObject render(const QString& bottlePath, const QJsonObject& record, const Runner& runner);

/// Writes the file into a directory, which differs from the bottle's path while the bottle is being made.
/// False with an error text on failure.
bool write(const QString& directory, QJsonObject data, QString* error);

/// Whether the file is missing or was not made from this bottle.yml.
bool isStale(const QString& bottlePath);

}  // namespace LaunchData
