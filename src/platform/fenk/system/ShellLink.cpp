#include "fenk/system/ShellLink.h"

#include <QRegularExpression>
#include <QStringList>
#include <QtEndian>

namespace Fenk {

namespace {

constexpr quint32 HeaderBytes = 0x4c;
constexpr quint32 MaximumCharacters = 32767;
constexpr quint32 EnvironmentBlock = 0xa0000001;
constexpr quint32 InstallerBlock = 0xa0000006;
constexpr quint32 FileEntryExtension = 0xbeef0004;
const QByteArray ClassId = QByteArray::fromHex("0114020000000000c000000000000046");

enum Flag : quint32 {
    HasIdList = 0x1,
    HasLinkInfo = 0x2,
    HasName = 0x4,
    HasRelativePath = 0x8,
    HasWorkingDirectory = 0x10,
    HasArguments = 0x20,
    HasIconLocation = 0x40,
    IsUnicode = 0x80,
};

/// Reads within a part of the file; outside of it reads 0 or empty.
class Bytes {
public:
    Bytes(const char* data, qint64 size) : m_data(data), m_size(qMax<qint64>(size, 0)) {}
    explicit Bytes(const QByteArray& file) : Bytes(file.constData(), file.size()) {}

    qint64 size() const { return m_size; }
    Bytes part(qint64 offset, qint64 size) const {
        if (offset < 0 || offset > m_size)
            return {m_data, 0};
        return {m_data + offset, qMin(size, m_size - offset)};
    }
    Bytes from(qint64 offset) const { return part(offset, m_size); }
    quint16 word(qint64 offset) const { return number<quint16>(offset); }
    quint32 dword(qint64 offset) const { return number<quint32>(offset); }
    quint8 byte(qint64 offset) const { return number<quint8>(offset); }

    /// Up to the null character.
    QString narrow() const {
        qint64 length = 0;
        while (length < m_size && m_data[length] != 0)
            ++length;
        return QString::fromLocal8Bit(m_data, int(length));
    }
    QString wide() const {
        QString text;
        for (qint64 offset = 0; offset + 1 < m_size && word(offset) != 0; offset += 2)
            text += QChar(word(offset));
        return text;
    }

private:
    template <typename T>
    T number(qint64 offset) const {
        return offset >= 0 && offset + qint64(sizeof(T)) <= m_size ? qFromLittleEndian<T>(m_data + offset)
                                                                   : T(0);
    }

    const char* m_data;
    qint64 m_size;
};

/// The offset of the long name behind the dates; later Windows versions have more fields before it.
qint64 longNameOffset(quint16 version) {
    return version >= 9 ? 46 : version >= 8 ? 42 : version >= 7 ? 38 : 20;
}

QString nameOfItem(const Bytes& item) {
    const QString shortName = item.part(14, item.size()).narrow();
    // The extension's offset stands in the item's last word.
    const Bytes extension = item.from(item.word(item.size() - 2));
    // Wine leaves version and signature out.
    const bool isOfWine = extension.word(2) == 0 && extension.dword(4) == 0;
    if (extension.dword(4) != FileEntryExtension && !isOfWine)
        return shortName;
    const QString name = extension.from(longNameOffset(extension.word(2))).wide();
    return name.isEmpty() ? shortName : name;
}

/// The path in a list of shell items; empty if it does not begin with a drive.
QString pathOfItems(Bytes list) {
    QStringList parts;
    while (list.word(0) >= 3) {
        const Bytes item = list.part(0, list.word(0));
        const int type = item.byte(2) & 0x70;
        if (type == 0x20 && parts.isEmpty())
            parts += item.from(3).narrow().left(2);
        else if (type == 0x30 && !parts.isEmpty())
            parts += nameOfItem(item);
        list = list.from(list.word(0));
    }
    return parts.size() > 1 ? parts.join('\\') : QString();
}

/// `wide` is the path in Unicode, if the file has one, `narrow` the one in the code page of its maker.
struct LinkInfo {
    QString wide;
    QString narrow;
};

LinkInfo linkInfo(const Bytes& info) {
    LinkInfo result;
    const quint32 headerBytes = info.dword(4);
    if ((info.dword(8) & 1) == 0)
        return result;
    result.narrow = info.from(info.dword(16)).narrow() + info.from(info.dword(24)).narrow();
    if (headerBytes >= 0x24)
        result.wide = info.from(info.dword(28)).wide() + info.from(info.dword(32)).wide();
    return result;
}

bool isPlainPath(const QString& path) {
    static const QRegularExpression pattern("\\A[A-Za-z]:\\\\[^[:cntrl:]]+\\z");
    return path.size() <= int(MaximumCharacters) && pattern.match(path).hasMatch();
}

}  // namespace

std::optional<ShellLink> ShellLink::parse(const QByteArray& file) {
    const Bytes bytes(file);
    if (file.size() > MaximumBytes || bytes.dword(0) != HeaderBytes || file.mid(4, 16) != ClassId)
        return std::nullopt;
    const quint32 flags = bytes.dword(20);
    qint64 offset = HeaderBytes;
    QString fromItems;
    LinkInfo info;
    if (flags & HasIdList) {
        fromItems = pathOfItems(bytes.part(offset + 2, bytes.word(offset)));
        offset += 2 + bytes.word(offset);
    }
    if (flags & HasLinkInfo) {
        info = linkInfo(bytes.part(offset, bytes.dword(offset)));
        offset += bytes.dword(offset);
    }
    ShellLink link;
    const std::pair<quint32, QString*> strings[] = {{HasName, &link.description},
                                                    {HasRelativePath, &link.relativePath},
                                                    {HasWorkingDirectory, &link.workingDirectory},
                                                    {HasArguments, &link.arguments},
                                                    {HasIconLocation, &link.iconPath}};
    for (const auto& [flag, text] : strings) {
        if (!(flags & flag))
            continue;
        const qint64 length = qint64(bytes.word(offset)) * (flags & IsUnicode ? 2 : 1);
        const Bytes string = bytes.part(offset + 2, length);
        *text = flags & IsUnicode ? string.wide() : string.narrow();
        offset += 2 + length;
    }
    QString fromEnvironment;
    while (bytes.dword(offset) >= 8) {
        const Bytes block = bytes.part(offset, bytes.dword(offset));
        if (block.dword(4) == InstallerBlock)
            return std::nullopt;
        if (block.dword(4) == EnvironmentBlock)
            fromEnvironment = block.from(8 + 260).wide();
        offset += bytes.dword(offset);
    }
    for (const QString& path : {info.wide, fromItems, info.narrow, fromEnvironment}) {
        if (isPlainPath(path)) {
            link.target = path;
            return link;
        }
    }
    return std::nullopt;
}

}  // namespace Fenk
