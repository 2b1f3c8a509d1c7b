#pragma once

#include <QByteArray>
#include <QVector>
#include <QtEndian>

namespace TestSupport {

/// An entry of a zip archive as a stranger could write it.
struct ZipItem {
    QByteArray name;
    QByteArray content;
    quint16 flags = 0;    ///< 1: encrypted, 0x800: the name is UTF-8
    quint16 mode = 0;     ///< of Unix, such as 0120777 for a link; 0: of DOS
    qint64 claimed = -1;  ///< size in the lists instead of the true one
};

/// An archive of stored files, byte by byte, since libraries write only what they would read.
inline QByteArray zipOf(const QVector<ZipItem>& items) {
    const auto number = [](quint32 value, int bytes) {
        value = qToLittleEndian(value);
        return QByteArray(reinterpret_cast<const char*>(&value), bytes);
    };
    const auto crcOf = [](const QByteArray& bytes) {
        quint32 crc = ~0U;
        for (const char byte : bytes) {
            crc ^= quint8(byte);
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc >> 1) ^ (crc & 1 ? 0xedb88320 : 0);
        }
        return ~crc;
    };
    QByteArray files, list;
    for (const ZipItem& item : items) {
        const quint32 size = quint32(item.claimed < 0 ? item.content.size() : item.claimed);
        const QByteArray common = number(item.flags, 2) + number(0, 2) + number(0x21 << 16, 4) +
                                  number(crcOf(item.content), 4) + number(quint32(item.content.size()), 4) +
                                  number(size, 4) + number(quint32(item.name.size()), 2) + number(0, 2);
        list += "PK\1\2" + number(item.mode ? 0x314 : 0x14, 2) + number(20, 2) + common + number(0, 2) +
                number(0, 4) + number(quint32(item.mode) << 16, 4) + number(quint32(files.size()), 4) +
                item.name;
        files += "PK\3\4" + number(20, 2) + common + item.name + item.content;
    }
    const QByteArray count = number(quint32(items.size()), 2);
    return files + list + "PK\5\6" + number(0, 4) + count + count + number(quint32(list.size()), 4) +
           number(quint32(files.size()), 4) + number(0, 2);
}

}  // namespace TestSupport
