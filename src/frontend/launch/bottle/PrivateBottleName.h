#pragma once

#include <QString>

/// A program's own bottle is named after its file, so that the same file always finds the same bottle.

/// MD5 (hex) of the file's key parts: a zero-filled block of 11 MiB that holds the last 1 MiB of the file
/// followed by up to 10 MiB from its start, or the whole file when it is smaller than 1 MiB. Two large files
/// that differ only in the middle share a key. Empty when the file can't be read.
QString partialFileMd5(const QString& path);

/// File name (cut to 50 characters and marked with "-" when longer) and key, without the characters that
/// shells and Wine trip over.
QString privateBottleName(const QString& fileName, const QString& md5);

/// Both of the above for a file on disk.
QString privateBottleNameOf(const QString& path);
