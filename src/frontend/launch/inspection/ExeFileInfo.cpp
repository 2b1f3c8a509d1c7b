#include "launch/inspection/ExeFileInfo.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

#include "backend/BottleUtils.h"
#include "core/base/Paths.h"
#include "core/base/ToolProcess.h"
#include "launch/inspection/ExeFileChecker.h"

QJsonObject exeFileInfo(const QString& path) {
    if (!QFileInfo(path).isFile()) {
        qWarning() << path << "is not a file";
        return {};
    }
    const QJsonObject peInfo = ExeFileChecker(path).info();
    return {{"peinfo", peInfo}, {"verinfo", peVersionInfo(path)}};
}

QJsonObject peVersionInfo(const QString& path, bool* readable) {
    const QJsonDocument answer =
        QJsonDocument::fromJson(ToolProcess::runQuietly(Paths::peVersionInfoScript(), {path}).standardOutput);
    if (readable)
        *readable = answer.isObject();
    return answer.object();
}

QString readableVersion(const QJsonObject& versionBlock) {
    QString version = versionBlock.value("ProductVersion").toString();
    if (version.isEmpty())
        version = versionBlock.value("FileVersion").toString();
    return version.replace(QRegularExpression(QStringLiteral("[,.\uff0c]")), ".").remove(' ');
}

QString programVersion(const QJsonObject& bottleRecord, const QString& programId) {
    const QString path = BottleUtils::programPath(bottleRecord, programId);
    return path.isEmpty() ? QString() : readableVersion(peVersionInfo(path));
}
