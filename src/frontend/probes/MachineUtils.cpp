#include "probes/MachineUtils.h"

#include <QDebug>

#include "fenk/system/DesktopEntry.h"

QString MachineUtils::cpuArchitecture(const QString& word) {
    static const QString x86 = "x86_";
    static const QString aarch = "aarch";
    if (word.startsWith(x86))
        return "amd" + word.mid(x86.size());
    if (word.startsWith(aarch))
        return "arm" + word.mid(aarch.size());
    return word;
}

QString MachineUtils::osVersion(const QString& file) {
    const Fenk::DesktopEntry entry(file);
    // The reader calls any file without an application's group faulty, and this one has none.
    const QStringList groups = entry.allGroups();
    const bool otherwiseGood = entry.status() == Fenk::DesktopEntry::FormatError &&
                               groups.contains("Version") && !groups.contains("Desktop Entry");
    if (entry.status() != Fenk::DesktopEntry::NoError && !otherwiseGood) {
        qWarning().noquote() << "can't read the system's version from" << file << "status"
                             << int(entry.status());
        return {};
    }
    const auto value = [&entry](const char* key) { return entry.stringValue(key, "Version"); };
    return QString("%1,%2,%3,%4")
        .arg(value("SystemName"), value("EditionName"), value("MajorVersion"), value("MinorVersion"));
}

QProcessEnvironment englishProcessEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "en_US.UTF-8");
    environment.insert("LANG", "en_US.UTF-8");
    environment.insert("LANGUAGE", "en_US");
    return environment;
}
