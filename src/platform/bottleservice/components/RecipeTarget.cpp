#include "bottleservice/components/RecipeTarget.h"

#include <QFile>

#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/SlimPrefix.h"

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;

QByteArray utf16(const QString& text) {
    return {reinterpret_cast<const char*>(text.utf16()), text.size() * 2};
}

/// The names are in UTF-16, little-endian as on every machine that Wine runs on.
QStringList addonsNamedIn(const QString& path) {
    QFile file(path);
    if (file.size() > MaximumBytes || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    QStringList addons;
    for (const QString prefix : {"wine-gecko-", "wine-mono-"}) {
        const int begin = content.indexOf(utf16(prefix));
        QString version;
        for (int i = begin + prefix.size() * 2; begin >= 0 && i + 1 < content.size(); i += 2) {
            const QChar character(content[i], content[i + 1]);
            if (!character.isDigit() && character != '.')
                break;
            version += character;
        }
        if (!version.isEmpty())
            addons += prefix + version;
    }
    return addons;
}

}  // namespace

RecipeTarget RecipeTarget::of(const QString& bottlePath, const QString& wine) {
    RecipeTarget target;
    target.is64Bit = PrefixFiles::is64Bit(bottlePath);
    const QStringList directories = SlimPrefix::peDirectories(wine);
    // An old Wine has its files elsewhere, and nothing is known about it.
    target.runs32Bit = directories.isEmpty() || Runners::runs32Bit(wine);
    for (const QString& directory : directories)
        target.addons += addonsNamedIn(directory + "/appwiz.cpl");
    target.addons.removeDuplicates();
    return target;
}
