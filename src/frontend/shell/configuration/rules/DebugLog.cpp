#include "shell/configuration/rules/DebugLog.h"

#include <QRegularExpression>

DebugLog::Kind DebugLog::kindOf(const QString& line) {
    static const QRegularExpression error("ERROR|err");
    if (line.contains(QLatin1String(":trace:")))
        return Kind::Dropped;
    return line.contains(error) ? Kind::Error : Kind::Plain;
}
