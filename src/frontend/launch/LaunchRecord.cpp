#include "launch/LaunchRecord.h"

#include <QFileInfo>
#include <QJsonDocument>

namespace {

QString base64(const QString& text) {
    return QString::fromLatin1(text.toLocal8Bit().toBase64());
}

QString yesOrNo(bool yes) {
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

}  // namespace

QJsonObject LaunchRecord::toJson(QJsonObject common) const {
    common["action"] = "launch_exe";
    common["successed"] = succeeded;
    common["exename"] = QFileInfo(exePath).fileName();
    common["fileinfo_64"] = base64(QString::fromUtf8(QJsonDocument(fileInfo).toJson(QJsonDocument::Compact)));
    common["errorLogs_64"] = base64(logLines.mid(logLines.size() - LogLines).join('\n'));
    common["rating"] = rating;
    common["runner"] = runner;
    common["program_cnt"] = programs;
    common["repaired"] = yesOrNo(repaired);
    common["canceled"] = yesOrNo(canceled);
    return common;
}
