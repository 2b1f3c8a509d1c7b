#include "launch/icons/UntrustedImage.h"

#include <QBuffer>
#include <QImageReader>

#include "fenk/system/RegularFile.h"
#include "launch/icons/IconFile.h"
#include "launch/icons/SvgPicture.h"

namespace UntrustedImage {

namespace {

/// Formats whose decoders are bounded by the size that the header tells.
bool isKnown(const QByteArray& format) {
    static const QByteArrayList formats = {"png", "jpg", "jpeg", "gif", "bmp", "webp"};
    return formats.contains(format);
}

Result keep(const QImage& image, int keptEdge, bool isDrawn = false) {
    if (qMax(image.width(), image.height()) <= keptEdge)
        return {image, isDrawn, image.isNull() ? "it cannot be decoded" : ""};
    return {image.scaled(keptEdge, keptEdge, Qt::KeepAspectRatio, Qt::SmoothTransformation), true, ""};
}

}  // namespace

Result decode(const QByteArray& bytes, int keptEdge) {
    if (bytes.size() > MaxBytes)
        return {{}, false, "it is larger than 5 MiB"};
    if (bytes.trimmed().startsWith('<'))
        return keep(SvgPicture::draw(bytes, keptEdge), keptEdge, true);
    if (IconFile::isIco(bytes)) {
        const QList<QImage> images = IconFile::imagesIn(bytes);
        return keep(images.isEmpty() ? QImage() : images.last(), keptEdge);
    }
    if (IconFile::gifEdge(bytes) > MaxEdge)
        return {{}, false, "it is larger than 4096 pixels"};
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (!isKnown(reader.format()))
        return {{}, false, "it is no picture"};
    const QSize size = reader.size();
    if (!size.isValid() || qMax(size.width(), size.height()) > MaxEdge)
        return {{}, false, "it is larger than 4096 pixels"};
    reader.setAutoTransform(true);
    return keep(reader.read(), keptEdge);
}

Result read(const QString& path) {
    const auto bytes = Fenk::RegularFile::read(path, MaxBytes);
    return bytes ? decode(*bytes) : Result{{}, false, "it cannot be read"};
}

}  // namespace UntrustedImage
