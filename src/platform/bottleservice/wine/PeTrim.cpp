#include "bottleservice/wine/PeTrim.h"

#include <QtEndian>
#include <algorithm>

#include "bottleservice/wine/PeFile.h"

namespace {

constexpr int SignatureOffset = 0x40;  // of Wine's own, in the DOS header
constexpr int SignatureBytes = 32;
constexpr int DirectoryBytes = 8;
constexpr int OptionalBytes = 112;  // at least, so that the fields below can be read
constexpr quint32 DebugDirectory = 6;
constexpr quint16 Magic64 = 0x20b;
constexpr quint16 Magic32 = 0x10b;

quint16 wordAt(const QByteArray& file, int offset) {
    return qFromLittleEndian<quint16>(file.constData() + offset);
}

quint32 dwordAt(const QByteArray& file, int offset) {
    return qFromLittleEndian<quint32>(file.constData() + offset);
}

void put(QByteArray* file, int offset, quint32 value) {
    qToLittleEndian(value, file->data() + offset);
}

bool isDebugSection(const PeFile::Section& section) {
    return section.name.startsWith("/") || section.name.startsWith(".debug");
}

/// Whether everything that the data directories name, but the debugger's, lies before the end of the image.
bool areDirectoriesKept(const QByteArray& file, int directories, quint32 imageEnd) {
    const quint32 count = std::min<quint32>(dwordAt(file, directories - 4), 16);
    if (directories + qint64(count) * DirectoryBytes > file.size())
        return false;
    for (quint32 i = 0; i < count; ++i) {
        if (i != DebugDirectory && dwordAt(file, directories + int(i) * DirectoryBytes) >= imageEnd)
            return false;
    }
    return true;
}

}  // namespace

QByteArray PeTrim::trimmed(const QByteArray& file) {
    if (!file.mid(SignatureOffset, SignatureBytes).startsWith("Wine "))
        return {};
    const PeFile pe = PeFile::parse(file, file.size());
    const int optional = pe.coffHeader + PeFile::CoffBytes;
    if (pe.sections.isEmpty() || optional + OptionalBytes > file.size())
        return {};
    const quint16 magic = wordAt(file, optional);
    if (magic != Magic64 && magic != Magic32)
        return {};

    // Sections with a long name may also stand further ahead: unwind data, which is loaded.
    int kept = pe.sections.size();
    while (kept > 0 && isDebugSection(pe.sections[kept - 1]))
        --kept;
    quint32 imageEnd = 0;
    qint64 fileEnd = dwordAt(file, optional + 60);  // of the headers
    for (const PeFile::Section& section : pe.sections.mid(0, kept)) {
        imageEnd = std::max(imageEnd, section.address + std::max(section.memoryBytes, section.fileBytes));
        fileEnd = std::max(fileEnd, section.fileEnd());
    }
    const bool isBehind =
        std::all_of(pe.sections.begin() + kept, pe.sections.end(),
                    [imageEnd](const PeFile::Section& section) { return section.address >= imageEnd; });
    if (kept == 0 || kept == pe.sections.size() || fileEnd >= file.size() || imageEnd == 0 || !isBehind ||
        !areDirectoriesKept(file, optional + (magic == Magic64 ? 112 : 96), imageEnd))
        return {};

    QByteArray result = file.left(int(fileEnd));
    qToLittleEndian(quint16(kept), result.data() + pe.coffHeader + 6);
    put(&result, pe.coffHeader + 8 + 4, 0);  // symbol table
    put(&result, pe.coffHeader + 8 + 8, 0);  // number of symbols
    const quint32 alignment = std::max<quint32>(dwordAt(file, optional + 32), 1);
    put(&result, optional + 56, (imageEnd + alignment - 1) / alignment * alignment);
    return result;
}
