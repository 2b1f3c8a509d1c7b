#include "store/install/SetupRecord.h"

#include <QFileInfo>
#include <QJsonDocument>

#include "launch/records/EventRecord.h"

namespace {

constexpr int NotRated = -1;

QString yesOrNo(bool yes) {
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

}  // namespace

QJsonObject SetupRecord::toJson(QJsonObject common) const {
    common["action"] = "setup_yml";
    common["successed"] = yesOrNo(succeeded);
    common["exename"] = QFileInfo(setupFile).fileName();
    common["fileinfo_64"] =
        EventRecord::base64(QString::fromUtf8(QJsonDocument(fileInfo).toJson(QJsonDocument::Compact)));
    common["errorLogs_64"] = EventRecord::base64(logLines.join('\n'));
    common["rating"] = NotRated;
    common["runner"] = runner;
    common["program_cnt"] = programs;
    common["canceled"] = yesOrNo(canceled);
    common["bottle_setuped"] = yesOrNo(isBottleReady);
    return common;
}
