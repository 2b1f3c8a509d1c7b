#include "launch/inspection/ProgramHeader.h"

#include <QFile>
#include <QtEndian>

#include "fenk/system/RegularFile.h"

namespace {

constexpr int HeadBytes = 4096;
constexpr int NewHeaderBytes = 8192;  // fits 96 sections, the most that Windows loads
constexpr int DosHeaderBytes = 28;
constexpr int NewHeaderField = 60;
constexpr int FirstRelocationField = 24;
constexpr quint16 NewFormatMark = 64;  // relocation offset of files that have a newer header
constexpr int CoffBytes = 24;
constexpr int SubsystemField = CoffBytes + 68;
constexpr quint16 Magic32 = 0x10b;
constexpr int DirectoriesField32 = CoffBytes + 96;  // they follow their count
constexpr int DirectoryBytes = 8;
constexpr quint32 DotNetDirectory = 14;
constexpr int FileAlignmentField = CoffBytes + 36;
constexpr int SectionBytes = 40;
constexpr quint32 HoldsNoData = 0x80;
constexpr qint64 PageBytes = 4096;
constexpr qint64 MostAlignment = 0x10000;

/// A block of a file; bytes beyond its end read as 0.
class Bytes {
public:
    explicit Bytes(const QByteArray& data) : m_data(data) {}
    template <class Number>
    Number number(qint64 at) const {
        return at >= 0 && at + qint64(sizeof(Number)) <= m_data.size()
                   ? qFromLittleEndian<Number>(m_data.constData() + at)
                   : Number(0);
    }
    quint16 word(qint64 at) const { return number<quint16>(at); }
    quint32 doubleWord(qint64 at) const { return number<quint32>(at); }
    bool has(const char* text) const { return m_data.startsWith(text); }
    int size() const { return m_data.size(); }

private:
    QByteArray m_data;
};

QByteArray block(QFile& file, qint64 at, int bytes) {
    return file.seek(at) ? file.read(bytes) : QByteArray();
}

/// Tolerates a missing end of less than a page or less than the file alignment: such files come from tools
/// that shorten files and from packers that write smaller sections than they claim.
bool lacksSections(const Bytes& header, qint64 fileSize) {
    const qint64 table = CoffBytes + header.word(20);
    const qint64 alignment = qMin<qint64>(header.doubleWord(FileAlignmentField), MostAlignment);
    const qint64 end = fileSize + qMax(PageBytes, alignment);
    for (int i = 0; i < header.word(6) && table + (i + 1) * SectionBytes <= header.size(); ++i) {
        const qint64 section = table + i * SectionBytes;
        const qint64 virtualSize = header.doubleWord(section + 8);
        qint64 size = header.doubleWord(section + 16);
        const qint64 start = header.doubleWord(section + 20);
        if (virtualSize != 0)
            size = qMin(size, (virtualSize + PageBytes - 1) / PageBytes * PageBytes);
        const bool isInFile = start != 0 && size != 0 && (header.doubleWord(section + 36) & HoldsNoData) == 0;
        if (isInFile && start + size > end)
            return true;
    }
    return false;
}

void readPortable(ProgramHeader& result, const Bytes& header, qint64 at, qint64 fileSize) {
    result.format = ProgramHeader::Portable;
    result.machine = header.word(4);
    result.magic = header.word(CoffBytes);
    const bool hasDotNet = header.doubleWord(DirectoriesField32 - 4) > DotNetDirectory;
    result.isDotNet = result.magic == Magic32 && hasDotNet &&
                      header.doubleWord(DirectoriesField32 + DotNetDirectory * DirectoryBytes) != 0;
    result.characteristics = header.word(22);
    result.subsystem = header.word(SubsystemField);
    const qint64 headerEnd = at + CoffBytes + header.word(20) + header.word(6) * SectionBytes;
    result.isCut = headerEnd > fileSize || lacksSections(header, fileSize);
}

void readExecutable(ProgramHeader& result, QFile& file, const Bytes& head) {
    result.format = ProgramHeader::Dos;
    result.isCut = file.size() < DosHeaderBytes;
    const qint64 at = head.doubleWord(NewHeaderField);
    const Bytes header(at > 0 ? block(file, at, NewHeaderBytes) : QByteArray());
    if (header.has("PE") && header.word(2) == 0) {
        readPortable(result, header, at, file.size());
    } else if (header.has("NE")) {
        result.format = ProgramHeader::Segmented;
        result.isForOs2 = header.word(54) == 1;
    } else if (header.has("LE") || header.has("LX")) {
        result.format = ProgramHeader::Linear;
        result.isForOs2 = header.has("LX") || header.word(10) == 1;
    } else if (head.word(FirstRelocationField) == NewFormatMark) {
        result.isCut = qMax<qint64>(at + CoffBytes, NewHeaderField + 4) > file.size();
    }
}

/// The class id of the root entry identifies packages among compound files.
bool isPackage(QFile& file, const Bytes& head) {
    const int shift = head.word(30);
    const quint32 sector = head.doubleWord(48);
    if (shift != 9 && shift != 12)
        return false;
    const Bytes root(block(file, (qint64(sector) + 1) << shift, 128));
    const quint32 first = root.doubleWord(80);
    return (first == 0xc1084 || first == 0xc1086) && root.number<quint64>(88) == 0x46000000000000c0;
}

ProgramHeader::Format otherFormat(const QByteArray& head) {
    for (const char* mark : {"PK\x03\x04", "Rar!\x1a\x07", "7z\xbc\xaf\x27\x1c", "MSCF", "\x1f\x8b", "BZh"}) {
        if (head.startsWith(mark))
            return ProgramHeader::Archive;
    }
    if (head.startsWith("\x7f"
                        "ELF") ||
        head.startsWith("#!"))
        return ProgramHeader::Unix;
    const QByteArray text =
        (head.startsWith("\xef\xbb\xbf") ? head.mid(3) : head).trimmed().left(16).toLower();
    for (const char* mark : {"<!doctype html", "<html", "<head", "<?xml"}) {
        if (text.startsWith(mark))
            return ProgramHeader::Web;
    }
    return ProgramHeader::Other;
}

}  // namespace

ProgramHeader ProgramHeader::read(const QString& path) {
    ProgramHeader result;
    QFile file;
    if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed))
        return result;
    const QByteArray start = file.read(HeadBytes);
    const Bytes head(start);
    if (head.has("MZ") || head.has("ZM")) {
        readExecutable(result, file, head);
    } else if (head.has("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1")) {
        result.format = Compound;
        result.isPackage = ::isPackage(file, head);
    } else {
        result.format = otherFormat(start);
    }
    return result;
}

bool ProgramHeader::isProgram() const {
    return format == Dos || format == Segmented || format == Linear || format == Portable || isPackage;
}

bool ProgramHeader::is32BitOnly() const {
    return format == Portable && machine == MachineI386 && magic == Magic32 && !isDotNet;
}
