#include "bottleservice/wine/PeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace {

constexpr int HeaderOffsetField = 0x3c;
constexpr int CoffBytes = 24;  // with the four bytes of the signature
constexpr int SectionBytes = 40;
constexpr qint64 MaximumHeaderBytes = 64 * 1024;

}  // namespace

PeFile::State PeFile::stateOf(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return State::Other;
    const QByteArray head = file.read(MaximumHeaderBytes);
    const auto word = [&head](qint64 at) { return qFromLittleEndian<quint16>(head.constData() + at); };
    const auto dword = [&head](qint64 at) { return qFromLittleEndian<quint32>(head.constData() + at); };
    if (!head.startsWith("MZ"))
        return State::Other;
    if (head.size() < HeaderOffsetField + 4)
        return State::CutShort;
    const qint64 coff = dword(HeaderOffsetField);
    if (coff + CoffBytes > head.size())
        return coff + CoffBytes > file.size() ? State::CutShort : State::Other;
    if (head.mid(int(coff), 4) != QByteArray("PE\0\0", 4))
        return State::Other;
    const qint64 table = coff + CoffBytes + word(coff + 20);
    const int sections = word(coff + 6);
    if (table + sections * SectionBytes > head.size())
        return table + sections * SectionBytes > file.size() ? State::CutShort : State::Other;
    for (int i = 0; i < sections; ++i) {
        const qint64 section = table + i * SectionBytes;
        if (dword(section + 16) > 0 && qint64(dword(section + 20)) + dword(section + 16) > file.size())
            return State::CutShort;
    }
    return State::Whole;
}
