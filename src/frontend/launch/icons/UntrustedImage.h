#pragma once

#include <QByteArray>
#include <QImage>

/// Decodes pictures that come from the net, lie in a cache or were chosen by the user. Thread-safe; for a
/// worker thread where it can be, because a large picture takes some 100 ms.
namespace UntrustedImage {

constexpr int MaxBytes = 5 << 20;
constexpr int MaxEdge = 4096;  ///< in pixels, as the file says; larger ones are not decoded
constexpr int KeptEdge = 512;  ///< larger pictures are scaled down to it, unless told otherwise

struct Result {
    QImage image;            ///< null for what is no picture or above a limit
    bool isDrawn = false;    ///< `image` has other pixels than the file: scaled down, or drawn from an SVG
    const char* error = "";  ///< for logs
};

/// PNG, JPEG, GIF (the first frame), BMP, ICO (its widest image), WebP where Qt has it, and SVG that is not
/// compressed.
Result decode(const QByteArray& bytes, int keptEdge = KeptEdge);
/// Refuses anything but a regular file, links included.
Result read(const QString& path);

}  // namespace UntrustedImage
