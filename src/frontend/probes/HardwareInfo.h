#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// The machine's hardware: "cpu", "mesa", "nvidia" (strings, empty where unknown) and "gpus", an array
/// of
/// {"gpu", "module"}. Starts child processes and waits for each at most 30 s.
QJsonObject hardwareInfo();

/// The content of /etc/machine-id; empty if unreadable.
QString machineId();

/// "hardware", "os", "arch" and "machine_id"; collected once per process. The first call takes seconds. May
/// be called from any thread.
QJsonObject machineInfo();

/// The graphics devices in the text of "lspci -vv".
QJsonArray parseGraphicsDevices(const QString& lspci);
/// The model name in the text of "lscpu".
QString parseCpuModel(const QString& lscpu);
/// A Debian version without epoch and revision.
QString upstreamVersion(const QString& debianVersion);
