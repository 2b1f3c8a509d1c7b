#pragma once

#include <QByteArray>
#include <QString>

namespace StoreServer {

/// An application's icon: a PNG of at most 512 x 512, or an SVG without scripts, entities and anything of
/// other files. Clients draw it, so it is checked before it is served.
struct IconFile {
    enum class Kind { None, Png, Svg };

    Kind kind = Kind::None;
    QByteArray data;

    /// "<appInfoId>-<hash of the content>.png", by which it is served; empty without an icon.
    QString servedName(const QString& appInfoId) const;
};

constexpr qint64 MaximumIconBytes = 256 * 1024;

/// What is wrong with the content of an icon; empty when it is in order.
QString iconFault(IconFile::Kind kind, const QByteArray& data);

}  // namespace StoreServer
