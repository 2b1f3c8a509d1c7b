#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QSysInfo>

/// Facts about the machine, in the terms of packages and records.
namespace MachineUtils {

/// "amd64", "arm64" and the like, from the word of the toolkit ("x86_64").
QString cpuArchitecture(const QString& word = QSysInfo::currentCpuArchitecture());

/// "name,edition,major,minor" of the system; empty, with a log line, when the file can't be read.
QString osVersion(const QString& file = "/etc/os-version");

}  // namespace MachineUtils

/// The environment for children whose output is parsed.
QProcessEnvironment englishProcessEnvironment();
