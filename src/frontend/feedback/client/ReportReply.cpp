#include "feedback/client/ReportReply.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>

#include "net/HttpAnswer.h"

namespace {

constexpr int StatusOk = 200, StatusMissing = 500;
constexpr int LongestDesc = 1000;

}  // namespace

ReportReply ReportReply::of(const HttpAnswer& answer) {
    // A server that refuses may say why, too.
    const QJsonObject body = QJsonDocument::fromJson(answer.body).object();
    ReportReply reply;
    reply.desc = body.value("desc").toString().left(LongestDesc);
    if (answer.error != HttpAnswer::Error::None) {
        qWarning().noquote() << "the report service failed:" << answer.errorText << reply.desc;
        return reply;
    }
    qDebug() << "parseJson:" << body;
    const int status = body.value("status").toInt(StatusMissing);
    reply.ok = status == StatusOk;
    if (reply.ok)
        reply.datas = body.value("datas").toArray();
    else
        qWarning().noquote() << "failed to get all feedBackType, status code " + QString::number(status)
                             << reply.desc;
    return reply;
}
