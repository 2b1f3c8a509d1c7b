#pragma once

#include <QByteArray>

/// What a JPEG file says beside its picture: where and when it was taken, with which camera, by whom.
namespace JpegPrivacy {

/// The same picture, pixel for pixel, without Exif, XMP and IPTC blocks, comments, and whatever comes behind
/// its end. Only how it is to be turned is kept. What is no JPEG stays as it is.
QByteArray stripped(const QByteArray& jpeg);

}  // namespace JpegPrivacy
