#pragma once

#include <QJsonObject>
#include <QString>

#include "bottleservice/wine/Runners.h"

/// What the launch script needs to know to start a program, kept as launch.json beside bottle.yml so that a
/// start costs neither a YAML parser nor a call on the bus:
///   {"version":1, "path", "runner", "wine", "wineserver", "emulator", "env":{name:value},
///    "source":{"size","mtime_ns"}, "programs":{uuid:{"name","path","folder","arguments","envs"}}}
/// The file is written after bottle.yml; when bottle.yml has another size or time than "source" tells,
/// somebody edited it by hand.
namespace LaunchData {

constexpr int Version = 1;

/// Settings of the bottle that act through environment variables.
QJsonObject environment(const QString& bottlePath, const QJsonObject& record);

/// The content of the file but "source". Without a runner "wine" and "wineserver" are empty.
QJsonObject render(const QString& bottlePath, const QJsonObject& record, const Runner& runner);

/// Writes the file into a directory, which differs from bottlePath while a bottle is being made.
bool write(const QString& directory, QJsonObject data, QString* error);

/// True if there is no file, or it was not made from this bottle.yml.
bool isStale(const QString& bottlePath);

}  // namespace LaunchData
