#include "shell/configuration/rules/DebugLog.h"

#include <QRegularExpression>
#include <QStringList>

#include "shell/configuration/rules/ComponentOffer.h"

namespace {
const QLatin1String FileWarnings("warn+file");
}

DebugLog::Kind DebugLog::kindOf(const QString& line) {
    static const QRegularExpression error("ERROR|err");
    if (line.contains(QLatin1String(":trace:")))
        return Kind::Dropped;
    return line.contains(error) ? Kind::Error : Kind::Plain;
}

QString DebugLog::channels(const QString& channels, const QString& runner) {
    const QString wanted =
        channels.isEmpty() ? QString("err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,warn+file")
                           : channels;
    if (!ComponentOffer::isProtonName(runner))
        return wanted;
    QStringList parts = wanted.split(',');
    parts.removeAll(FileWarnings);
    return parts.join(',');
}
