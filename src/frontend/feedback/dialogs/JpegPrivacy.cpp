#include "feedback/dialogs/JpegPrivacy.h"

#include <QBuffer>
#include <QImageReader>

namespace {

enum Marker : uchar {
    FirstRestart = 0xD0,
    LastRestart = 0xD7,
    Start = 0xD8,
    End = 0xD9,
    Exif = 0xE1,  // and XMP
    Iptc = 0xED,
    Comment = 0xFE
};

/// As Exif counts; 1 is a picture that stands as it is.
int orientationOf(const QByteArray& jpeg) {
    QBuffer buffer;
    buffer.setData(jpeg);
    buffer.open(QIODevice::ReadOnly);
    const int orientations[] = {1, 2, 4, 3, 6, 7, 5, 8};  // by QImageIOHandler::Transformations
    return orientations[int(QImageReader(&buffer).transformation()) & 7];
}

/// An Exif block with nothing but the orientation.
QByteArray orientationBlock(int orientation) {
    QByteArray block(
        "\xFF\xE1\x00\x22"
        "Exif\0\0MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0",
        36);
    block[29] = char(orientation);
    return block;
}

/// Where the data of a scan ends: the next marker but those that are part of it.
int endOfScan(const QByteArray& jpeg, int at) {
    for (; at + 1 < jpeg.size(); ++at) {
        const uchar next = uchar(jpeg[at + 1]);
        if (uchar(jpeg[at]) == 0xFF && next != 0 && next != 0xFF &&
            (next < FirstRestart || next > LastRestart))
            return at;
    }
    return jpeg.size();
}

}  // namespace

QByteArray JpegPrivacy::stripped(const QByteArray& jpeg) {
    constexpr uchar StartOfScan = 0xDA;
    if (!jpeg.startsWith("\xFF\xD8"))
        return jpeg;
    const int orientation = orientationOf(jpeg);
    QByteArray result = jpeg.left(2);
    if (orientation != 1)
        result += orientationBlock(orientation);
    for (int at = 2; at + 1 < jpeg.size();) {
        const uchar marker = uchar(jpeg[at + 1]);
        if (uchar(jpeg[at]) != 0xFF)
            return result + jpeg.mid(at);  // broken, but decoders may make something of it
        if (marker == 0xFF) {              // padding
            ++at;
            continue;
        }
        if (marker == End)
            return result + jpeg.mid(at, 2);
        if (at + 3 >= jpeg.size())
            break;
        const int length = 2 + (uchar(jpeg[at + 2]) << 8) + uchar(jpeg[at + 3]);
        const int next = marker == StartOfScan ? endOfScan(jpeg, at + length) : at + length;
        if (marker != Exif && marker != Iptc && marker != Comment)
            result += jpeg.mid(at, next - at);
        at = next;
    }
    return result;
}
