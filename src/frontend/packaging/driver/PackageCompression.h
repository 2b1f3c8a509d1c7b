#pragma once

#include <QString>

/// How packages are compressed: the setting "basic.deb_compression.", with the packing script's words. xz
/// makes the smaller file, zstd is several times as fast.
namespace PackageCompression {

extern const char Xz[];
extern const char Zstd[];

/// Xz unless the setting says Zstd.
QString current();
void set(const QString& word);

}  // namespace PackageCompression
