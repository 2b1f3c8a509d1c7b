#include "launch/inspection/NativeBits.h"

#include <QtEndian>

#include "core/base/RegularFile.h"

namespace {

constexpr qint64 DosHeaderBytes = 64;
constexpr int HeaderOffsetField = 60;
constexpr int CoffBytes = 24;  // with the four bytes of the signature
constexpr int DirectoriesOffset = CoffBytes + 96;
constexpr int DirectoryBytes = 8;
constexpr quint32 DotNetDirectory = 14;
constexpr quint16 MachineI386 = 0x14c;
constexpr quint16 Magic32 = 0x10b;

}  // namespace

bool is32BitOnly(const QString& path) {
    QFile file;
    if (!RegularFile::open(file, path, RegularFile::Links::Followed))
        return false;
    const QByteArray dos = file.read(DosHeaderBytes);
    if (dos.size() < DosHeaderBytes || !dos.startsWith("MZ") ||
        !file.seek(qFromLittleEndian<quint32>(dos.constData() + HeaderOffsetField)))
        return false;
    const QByteArray header = file.read(DirectoriesOffset + 16 * DirectoryBytes);
    if (header.size() < DirectoriesOffset || !header.startsWith(QByteArray("PE\0\0", 4)))
        return false;
    const char* bytes = header.constData();
    if (qFromLittleEndian<quint16>(bytes + 4) != MachineI386 ||
        qFromLittleEndian<quint16>(bytes + CoffBytes) != Magic32)
        return false;
    const int dotNet = DirectoriesOffset + int(DotNetDirectory) * DirectoryBytes;
    if (qFromLittleEndian<quint32>(bytes + DirectoriesOffset - 4) <= DotNetDirectory ||
        header.size() < dotNet + 4)
        return true;
    return qFromLittleEndian<quint32>(bytes + dotNet) == 0;
}
