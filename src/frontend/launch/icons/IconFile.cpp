#include "launch/icons/IconFile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMap>
#include <QPixmap>
#include <QtEndian>

#include "fenk/system/RegularFile.h"
#include "launch/icons/SvgPicture.h"

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;
constexpr int MaximumPixels = 512;  // per edge
constexpr int MaximumPixelsInFile = 4096;
constexpr int MaximumSizes = 16;
constexpr int HeadBytes = 6;
constexpr int EntryBytes = 16;
const QByteArray IcoMagic("\0\0\1\0", 4);
const QByteArray PngMagic("\x89PNG\r\n\x1a\n");
// Only formats whose header bounds the cost of decoding.
const QList<QByteArray> OtherFormats{"png", "jpeg", "bmp", "gif"};

/// One image of an .ico file: a PNG file, or a BMP file without its file header.
struct Entry {
    QByteArray head;  // directory entry
    QByteArray data;
    int width() const { return head[0] ? uchar(head[0]) : 256; }
    int colors() const {
        const int bits = qFromLittleEndian<quint16>(head.constData() + 6);
        return bits ? bits : uchar(head[2]);
    }
};

QImage decode(const QByteArray& data, const QByteArray& format) {
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (!size.isValid() || qMax(size.width(), size.height()) > MaximumPixels)
        return {};
    return reader.read();
}

/// Decodes a file with a single image, scaled down to the size of icons.
QImage decodePicture(const QByteArray& data) {
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (!OtherFormats.contains(reader.format()))
        return SvgPicture::draw(data, MaximumPixels);
    const QSize size = reader.size();
    const int edge = qMax(size.width(), size.height());
    if (!size.isValid() || qMax(edge, IconFile::gifEdge(data)) > MaximumPixelsInFile)
        return {};
    if (edge > MaximumPixels)
        reader.setScaledSize(
            size.scaled(MaximumPixels, MaximumPixels, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

/// The height in the header counts colours and mask.
bool hasSmallBitmap(const QByteArray& bmp) {
    constexpr int SizeEnd = 12;
    if (bmp.size() < SizeEnd)
        return false;
    const qint64 width = qFromLittleEndian<qint32>(bmp.constData() + 4);
    const qint64 height = qFromLittleEndian<qint32>(bmp.constData() + 8);
    return qAbs(width) <= MaximumPixels && qAbs(height) <= 2 * MaximumPixels;
}

QImage decode(const Entry& entry) {
    // The directory entry of a PNG image may be wrong; the decoder uses the header in the PNG.
    if (entry.data.startsWith(PngMagic))
        return decode(entry.data, "png");
    // The decoder takes a width of 0 from the header of the BMP.
    if (!hasSmallBitmap(entry.data))
        return {};
    QByteArray file = IcoMagic + QByteArray("\1\0", 2) + entry.head.left(8) + QByteArray(8, 0);
    qToLittleEndian<quint32>(quint32(entry.data.size()), file.data() + HeadBytes + 8);
    qToLittleEndian<quint32>(HeadBytes + EntryBytes, file.data() + HeadBytes + 12);
    return decode(file + entry.data, "ico");
}

/// Old programs have 32-bit images with an unused alpha channel.
bool isInvisible(const QImage& image) {
    if (!image.hasAlphaChannel())
        return false;
    const QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < alpha.height(); ++y) {
        for (int x = 0; x < alpha.width(); ++x) {
            if (alpha.constScanLine(y)[x])
                return false;
        }
    }
    return true;
}

QMap<int, Entry> bestOfEachSize(const QByteArray& file) {
    QMap<int, Entry> best;
    const int count = qFromLittleEndian<quint16>(file.constData() + 4);
    for (int at = HeadBytes; at < HeadBytes + count * EntryBytes && at + EntryBytes <= file.size();
         at += EntryBytes) {
        Entry entry{file.mid(at, EntryBytes), {}};
        const auto size = qFromLittleEndian<quint32>(entry.head.constData() + 8);
        const auto offset = qFromLittleEndian<quint32>(entry.head.constData() + 12);
        if (offset > quint32(file.size()) || size > quint32(file.size()) - offset)
            continue;
        entry.data = file.mid(int(offset), int(size));
        const auto other = best.constFind(entry.width());
        const bool isNew = other == best.constEnd();
        if (isNew ? best.size() < MaximumSizes : other->colors() < entry.colors())
            best.insert(entry.width(), entry);
    }
    return best;
}

}  // namespace

QList<QImage> IconFile::images(const QString& path) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed) ||
        file.size() > MaximumBytes)
        return {};
    return imagesIn(file.read(MaximumBytes));
}

bool IconFile::isIco(const QByteArray& bytes) {
    return bytes.startsWith(IcoMagic) && bytes.size() >= HeadBytes;
}

int IconFile::gifEdge(const QByteArray& bytes) {
    constexpr int GifHeadBytes = 13, FrameBytes = 10;
    if (!bytes.startsWith("GIF8") || bytes.size() < GifHeadBytes)
        return -1;
    const auto number = [&bytes](int at) { return int(qFromLittleEndian<quint16>(bytes.constData() + at)); };
    const int screen = qMax(number(6), number(8));
    const int flags = uchar(bytes[10]);
    int at = GifHeadBytes + (flags & 0x80 ? 3 << ((flags & 7) + 1) : 0);
    while (at + 2 < bytes.size() && bytes[at] == '!') {  // an extension: blocks with their length in front
        at += 2;
        while (at < bytes.size() && bytes[at] != 0)
            at += uchar(bytes[at]) + 1;
        ++at;
    }
    if (at + FrameBytes > bytes.size())
        return screen;
    return qMax(screen, qMax(number(at + 1) + number(at + 5), number(at + 3) + number(at + 7)));
}

QList<QImage> IconFile::imagesIn(const QByteArray& bytes) {
    QList<QImage> found;
    if (isIco(bytes)) {
        for (const Entry& entry : bestOfEachSize(bytes))
            found << decode(entry);
    } else {
        found << decodePicture(bytes);
    }
    QList<QImage> seen;
    for (const QImage& image : qAsConst(found)) {
        if (!image.isNull() && !isInvisible(image))
            seen << image;
    }
    return seen;
}

QIcon IconFile::read(const QString& path) {
    QIcon icon;
    for (const QImage& image : images(path))
        icon.addPixmap(QPixmap::fromImage(image));
    return icon;
}
