#pragma once

#include <QString>

/// A program's private bottle is named after its file, so the same file always gets the same bottle.

/// MD5 (hex) of parts of the file: an 11 MiB block of zeros that holds the last 1 MiB of the file followed by
/// up to 10 MiB from its start, or the whole file if it is smaller than 1 MiB. Large files that differ only
/// in the middle have the same value. Empty if the file can't be read.
QString partialFileMd5(const QString& path);

/// The file name (cut to 50 characters and marked with "-" when longer) and the MD5, without characters that
/// are special to shells or Wine.
QString privateBottleName(const QString& fileName, const QString& md5);

/// The name for a file on disk.
QString privateBottleNameOf(const QString& path);
