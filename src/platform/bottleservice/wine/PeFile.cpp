#include "bottleservice/wine/PeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <algorithm>

namespace {

constexpr int HeaderOffsetField = 0x3c;
constexpr qint64 MaximumHeaderBytes = 64 * 1024;

}  // namespace

PeFile PeFile::read(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return parse(file.read(MaximumHeaderBytes), file.size());
}

PeFile PeFile::parse(const QByteArray& head, qint64 fileBytes) {
    const auto word = [&head](qint64 at) { return qFromLittleEndian<quint16>(head.constData() + at); };
    const auto dword = [&head](qint64 at) { return qFromLittleEndian<quint32>(head.constData() + at); };
    const auto missing = [fileBytes](qint64 end) { return end > fileBytes ? State::CutShort : State::Other; };
    PeFile pe;
    if (!head.startsWith("MZ"))
        return pe;
    if (head.size() < HeaderOffsetField + 4) {
        pe.state = State::CutShort;
        return pe;
    }
    const qint64 coff = dword(HeaderOffsetField);
    if (coff + CoffBytes > head.size()) {
        pe.state = missing(coff + CoffBytes);
        return pe;
    }
    if (head.mid(int(coff), 4) != QByteArray("PE\0\0", 4))
        return pe;
    pe.coffHeader = int(coff);
    pe.machine = word(coff + 4);
    const qint64 table = coff + CoffBytes + word(coff + 20);
    const int count = word(coff + 6);
    if (table + count * SectionBytes > head.size()) {
        pe.state = missing(table + count * SectionBytes);
        return pe;
    }
    pe.sectionTable = int(table);
    for (qint64 at = table; at < table + count * SectionBytes; at += SectionBytes)
        pe.sections.append(
            {head.mid(int(at), 8), dword(at + 8), dword(at + 12), dword(at + 16), dword(at + 20)});
    const bool isCutShort =
        std::any_of(pe.sections.cbegin(), pe.sections.cend(), [fileBytes](const Section& section) {
            return section.fileBytes > 0 && section.fileEnd() > fileBytes;
        });
    pe.state = isCutShort ? State::CutShort : State::Whole;
    return pe;
}
