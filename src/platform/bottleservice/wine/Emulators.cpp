#include "bottleservice/wine/Emulators.h"

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

}  // namespace Emulators
