#include "backend/BottleLogs.h"

namespace {

constexpr int FileNameLimit = 255 - int(sizeof("wine-.txt")) + 1;

/// Cut so that the name of the log fits the 255 bytes of a file name.
QString logNamePart(QString fileName) {
    while (fileName.toUtf8().size() > FileNameLimit)
        fileName.chop(fileName.at(fileName.size() - 1).isLowSurrogate() ? 2 : 1);
    return fileName;
}

}  // namespace

QString BottleLogs::directory(const QString& bottlePath) {
    return bottlePath + "/logs";
}

QString BottleLogs::programFile(const QString& programId) {
    return "wine-program-" + programId + ".txt";
}

QString BottleLogs::ofProgram(const QString& bottlePath, const QString& programId) {
    if (bottlePath.isEmpty() || programId.contains('/'))
        return {};
    return directory(bottlePath) + "/" + programFile(programId);
}

QString BottleLogs::exeFile(const QString& fileName) {
    return "wine-" + logNamePart(fileName) + ".txt";
}

QString BottleLogs::ofExe(const QString& bottlePath, const QString& fileName) {
    if (bottlePath.isEmpty() || fileName.isEmpty() || fileName.contains('/'))
        return {};
    return directory(bottlePath) + "/" + exeFile(fileName);
}
