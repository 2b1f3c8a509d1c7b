#pragma once

#include <QByteArray>

namespace TestSupport {

/// A Windows program for x64, as far as its headers go.
inline QByteArray smallProgram() {
    QByteArray pe(1024, '\0');
    pe.replace(0, 2, "MZ").replace(0x3c, 1, "\x80").replace(0x80, 6, QByteArray("PE\0\0\x64\x86", 6));
    return pe.replace(0x94, 1, "\xf0").replace(0x98, 2, "\x0b\x02").replace(0xdc, 1, "\x03");
}

}  // namespace TestSupport
