#include "backend/BottleLogs.h"

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
