#include "launch/repair/BottleDamage.h"

namespace {

constexpr int Many = 20;

/// Files that nearly every program needs to start.
const QStringList& essentialFiles() {
    static const QStringList names = {"ntdll.dll",
                                      "kernel32.dll",
                                      "kernelbase.dll",
                                      "user32.dll",
                                      "gdi32.dll",
                                      "win32u.dll",
                                      "advapi32.dll",
                                      "sechost.dll",
                                      "msvcrt.dll",
                                      "rpcrt4.dll",
                                      "ucrtbase.dll",
                                      "ole32.dll",
                                      "combase.dll",
                                      "shell32.dll",
                                      "shlwapi.dll",
                                      "setupapi.dll",
                                      "imm32.dll",
                                      "version.dll",
                                      "explorer.exe",
                                      "services.exe",
                                      "wineboot.exe",
                                      "rundll32.exe",
                                      "start.exe",
                                      "conhost.exe",
                                      "winex11.drv",
                                      "locale.nls",
                                      "system.reg",
                                      "user.reg",
                                      "c:"};
    return names;
}

}  // namespace

QString BottleDamage::worst() const {
    for (const QString& name : essentialFiles()) {
        for (const QString& file : files) {
            if (file.endsWith('/' + name, Qt::CaseInsensitive) || file == name)
                return name;
        }
    }
    return {};
}

bool BottleDamage::isCause(bool isInLog) const {
    return count > 0 && (isInLog || count > Many || !worst().isEmpty());
}
