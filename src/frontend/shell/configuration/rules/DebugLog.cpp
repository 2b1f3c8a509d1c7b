#include "shell/configuration/rules/DebugLog.h"

DebugLog::Kind DebugLog::kindOf(const QString& line) {
    if (line.contains(QLatin1String(":trace:")))
        return Kind::Dropped;
    const bool isError = line.contains(QLatin1String("ERROR")) || line.contains(QLatin1String("err"));
    return isError ? Kind::Error : Kind::Plain;
}
