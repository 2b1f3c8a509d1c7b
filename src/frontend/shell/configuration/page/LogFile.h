#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// The files of debugging runs. Any program of the bottle may have put a link, a pipe or a huge file there.
/// These functions block on the disk.
namespace LogFile {

constexpr qint64 KeptBytes = 10 << 20;  ///< that the launch script keeps of a log; before are only zeros

/// Makes sure that the file is there and empty. False, with a log line, when it can't be.
bool empty(const QString& path);

/// At most `maximum` bytes of the end, without the line that is cut. Nothing for anything but a regular file.
std::optional<QByteArray> end(const QString& path, qint64 maximum);

struct Copy {
    bool isWritten = false;
    bool isShortened = false;
};
/// Writes the last KeptBytes of a log to another file, which is replaced when all is written.
Copy copy(const QString& from, const QString& to);

}  // namespace LogFile
