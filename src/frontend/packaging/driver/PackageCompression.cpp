#include "packaging/driver/PackageCompression.h"

#include "core/base/SettingsStore.h"

namespace PackageCompression {

const char Xz[] = "xz";
const char Zstd[] = "zstd";

namespace {
const char Key[] = "basic.deb_compression.";
}

QString current() {
    const QString word = settingsStore()->getOption(Key).toString();
    return word == QLatin1String(Zstd) ? word : QLatin1String(Xz);
}

void set(const QString& word) {
    settingsStore()->setOption(Key, word);
}

}  // namespace PackageCompression
