#include "bottleservice/bottles/Emulators.h"

#include <QStandardPaths>
#include <QSysInfo>

namespace Emulators {

namespace {

struct Emulator {
    const char* name;
    const char* executable;
};

// In the order of preference.
const Emulator Known[] = {
    {"box64", "box64"}, {"exagear", "exagear"}, {"phybin", "phybin"}, {"box86", "box86"}};

}  // namespace

QJsonObject describe(const QString& architecture, const QString& chosen, const Finder& find) {
    QJsonObject installed;
    QString first;
    if (architecture != "x86_64" && architecture != "i386") {
        for (const Emulator& emulator : Known) {
            const QString path = find(emulator.executable);
            if (path.isEmpty())
                continue;
            installed.insert(emulator.name, path);
            if (first.isEmpty())
                first = emulator.name;
        }
    }
    return {{"installed", installed}, {"using", installed.contains(chosen) ? chosen : first}};
}

QJsonObject describe(const QString& chosen) {
    return describe(QSysInfo::currentCpuArchitecture(), chosen,
                    [](const QString& name) { return QStandardPaths::findExecutable(name); });
}

QString pathInUse(const QString& chosen) {
    const QJsonObject emulators = describe(chosen);
    return emulators["installed"].toObject()[emulators["using"].toString()].toString();
}

}  // namespace Emulators
