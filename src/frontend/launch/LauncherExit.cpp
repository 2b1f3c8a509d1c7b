#include "launch/LauncherExit.h"

#include <QCoreApplication>
#include <QFile>

namespace {

constexpr int LongestLine = 4096;  // bytes

}  // namespace

QString LauncherExit::failure(int exitCode, const QString& logPath, const QString& programName) {
    QFile log(logPath);
    if (exitCode == 0 || !log.open(QIODevice::ReadOnly))
        return {};
    const QString line = QString::fromUtf8(log.readLine(LongestLine)).trimmed();
    const QString mark = QString("launcher: failed with %1: ").arg(exitCode);
    if (!line.startsWith(mark))
        return {};
    if (exitCode == NeedsWine32)
        return QCoreApplication::translate(
                   "ExeFileExecutor",
                   "%1 is a 32-bit program, and this Wine runs only 64-bit ones. Install the package wine32.")
            .arg(programName);
    if (exitCode == Busy)
        return QCoreApplication::translate("ExeFileExecutor",
                                           "Something is being installed into the bottle. Try again when "
                                           "that is done.");
    return line.mid(mark.size());
}
