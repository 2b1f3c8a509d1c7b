#include "launch/records/LaunchRecord.h"

#include <QFileInfo>
#include <QJsonDocument>

#include "launch/records/EventRecord.h"

namespace {

QString yesOrNo(bool yes) {
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

}  // namespace

QJsonObject LaunchRecord::toJson(QJsonObject common) const {
    common["action"] = "launch_exe";
    common["successed"] = succeeded;
    common["exename"] = QFileInfo(exePath).fileName();
    common["fileinfo_64"] =
        EventRecord::base64(QString::fromUtf8(QJsonDocument(fileInfo).toJson(QJsonDocument::Compact)));
    common["errorLogs_64"] = EventRecord::base64(logLines.join('\n'));
    common["rating"] = rating;
    common["runner"] = runner;
    common["program_cnt"] = programs;
    common["repaired"] = yesOrNo(repaired);
    common["canceled"] = yesOrNo(canceled);
    return common;
}
