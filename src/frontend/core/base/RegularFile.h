#pragma once

#include <QFile>

/// Files that programs of a bottle may have put there: a pipe would hold the reader up for ever, and a link
/// could lead to what is none of theirs.
namespace RegularFile {

enum class Links { Refused, Followed };

/// Opens for reading what is an ordinary file, without waiting. Anything else is false, with no word.
bool open(QFile& file, const QString& path, Links links = Links::Refused);

}  // namespace RegularFile
