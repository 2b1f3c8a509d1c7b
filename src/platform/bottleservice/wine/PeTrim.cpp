#include "bottleservice/wine/PeTrim.h"

#include <QtEndian>
#include <algorithm>

namespace {

constexpr int SignatureOffset = 0x40;
constexpr int HeaderOffsetField = 0x3c;
constexpr int CoffBytes = 24;  // with the four bytes of the signature
constexpr int SectionBytes = 40;
constexpr int DirectoryBytes = 8;
constexpr quint32 DebugDirectory = 6;
constexpr quint16 Magic64 = 0x20b;
constexpr quint16 Magic32 = 0x10b;

class Reader {
public:
    explicit Reader(const QByteArray& file) : m_file(file) {}
    bool holds(qint64 offset, qint64 bytes) const {
        return offset >= 0 && bytes >= 0 && offset + bytes <= m_file.size();
    }
    quint16 word(int offset) const { return qFromLittleEndian<quint16>(m_file.constData() + offset); }
    quint32 dword(int offset) const { return qFromLittleEndian<quint32>(m_file.constData() + offset); }

private:
    const QByteArray& m_file;
};

void put(QByteArray* file, int offset, quint32 value) {
    qToLittleEndian(value, file->data() + offset);
}

bool isDebugSection(const QByteArray& name) {
    return name.startsWith("/") || name.startsWith(".debug");
}

}  // namespace

QByteArray PeTrim::trimmed(const QByteArray& file) {
    const Reader pe(file);
    if (!pe.holds(0, SignatureOffset + 32) || !file.startsWith("MZ") ||
        !file.mid(SignatureOffset, 32).startsWith("Wine "))
        return {};
    const qint64 header = pe.dword(HeaderOffsetField);
    if (!pe.holds(header, CoffBytes + 112) || file.mid(int(header), 4) != QByteArray("PE\0\0", 4))
        return {};
    const int coff = int(header);
    const int count = pe.word(coff + 6);
    const int optional = coff + CoffBytes;
    const int table = optional + pe.word(coff + 20);
    const quint16 magic = pe.word(optional);
    if (!pe.holds(table, qint64(count) * SectionBytes) || (magic != Magic64 && magic != Magic32))
        return {};

    // A long name may also stand further ahead: unwind data, which is loaded.
    int kept = count;
    while (kept > 0 && isDebugSection(file.mid(table + (kept - 1) * SectionBytes, 8)))
        --kept;
    quint32 imageEnd = 0;
    qint64 fileEnd = pe.dword(optional + 60);  // of the headers
    for (int i = 0; i < count; ++i) {
        const int section = table + i * SectionBytes;
        const quint32 address = pe.dword(section + 12);
        if (i >= kept) {
            if (address < imageEnd)
                return {};
            continue;
        }
        imageEnd = std::max(imageEnd, address + std::max(pe.dword(section + 8), pe.dword(section + 16)));
        fileEnd = std::max(fileEnd, qint64(pe.dword(section + 20)) + pe.dword(section + 16));
    }
    if (kept == 0 || kept == count || fileEnd >= file.size() || imageEnd == 0)
        return {};
    const int directories = optional + (magic == Magic64 ? 112 : 96);
    const quint32 directoryCount = std::min<quint32>(pe.dword(directories - 4), 16);
    if (!pe.holds(directories, qint64(directoryCount) * DirectoryBytes))
        return {};
    for (quint32 i = 0; i < directoryCount; ++i) {
        if (i != DebugDirectory && pe.dword(directories + int(i) * DirectoryBytes) >= imageEnd)
            return {};
    }

    QByteArray result = file.left(int(fileEnd));
    qToLittleEndian(quint16(kept), result.data() + coff + 6);
    put(&result, coff + 8 + 4, 0);  // symbol table
    put(&result, coff + 8 + 8, 0);  // number of symbols
    const quint32 alignment = std::max<quint32>(pe.dword(optional + 32), 1);
    put(&result, optional + 56, (imageEnd + alignment - 1) / alignment * alignment);
    return result;
}
