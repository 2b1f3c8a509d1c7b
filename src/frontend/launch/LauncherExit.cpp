#include "launch/LauncherExit.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

#include "core/base/RegularFile.h"

namespace {

constexpr int LongestLine = 4096;  // bytes

}  // namespace

QString LauncherExit::failure(const QString& logPath, const QString& programName) {
    QFile log;
    if (!RegularFile::open(log, logPath))
        return {};
    static const QRegularExpression mark("^launcher: failed with (\\d+): (.*)$");
    const auto match = mark.match(QString::fromUtf8(log.readLine(LongestLine)).trimmed());
    if (!match.hasMatch())
        return {};
    const int exitCode = match.captured(1).toInt();
    if (exitCode == NeedsWine32)
        return QCoreApplication::translate(
                   "ExeFileExecutor",
                   "%1 is a 32-bit program, and this Wine runs only 64-bit ones. Install the package wine32.")
            .arg(programName);
    if (exitCode == Busy)
        return QCoreApplication::translate("ExeFileExecutor",
                                           "Something is being installed into the bottle. Try again when "
                                           "that is done.");
    return match.captured(2);
}
