#include "feedback/client/FeedBackApi.h"

#include <QDebug>
#include <QNetworkAccessManager>
#include <QTimer>

#include "core/base/CutText.h"
#include "feedback/client/ReportReply.h"
#include "net/HttpRequest.h"

QJsonObject AppScoreRequest::body() const {
    // A null text is written as the empty one, too; the key is always there.
    return {{"appName", cutText(appName, LongestText)},
            {"appVersion", cutText(appVersion, LongestText)},
            {"score", score},
            {"cfgFileKey", cfgFileKey}};
}

void FeedBackApi::getIssueTypes(QObject* context, const IssueTypesHandler& handler) {
    const ReportAccess access = ReportAccess::current();
    if (!access.hasService()) {
        qInfo().noquote() << "no problem types are asked for:" << access.whyNot();
        QTimer::singleShot(0, context, [handler] { handler({}); });
        return;
    }
    send("GET", access.request("/store-common-report/wineAssist/feedback/issueTypeDef"), {}, context,
         [handler](const ReportReply& reply) {
             QVector<IssueType> types;
             for (const QJsonValue& row : reply.datas)
                 types.append(
                     {row["id"].toVariant().toString(), row["name"].toString(), row["enName"].toString()});
             handler(types);
         });
}

void FeedBackApi::submitFeedback(const QJsonObject& json, const BottleVersions& versions, QObject* context,
                                 const SubmitHandler& handler) {
    submit("/store-common-report/wineAssist/feedback", json, versions, context, handler);
}

void FeedBackApi::submitAppScore(const AppScoreRequest& score, const BottleVersions& versions,
                                 QObject* context, const SubmitHandler& handler) {
    submit("/store-common-report/wineAssist/appScore", score.body(), versions, context, handler);
}

void FeedBackApi::submit(const QString& path, const QJsonObject& body, const BottleVersions& versions,
                         QObject* context, const SubmitHandler& handler) {
    const ReportAccess access = ReportAccess::current();
    if (!access.canSign()) {
        qInfo().noquote() << "nothing is sent:" << access.whyNot();
        QTimer::singleShot(0, context, [handler, reason = access.whyNot()] { handler(false, reason); });
        return;
    }
    QNetworkRequest request = access.request(path);
    ReportAccess::addVersions(versions, &request);
    const QByteArray text = access.signedBody(body, &request);
    send("POST", request, text, context,
         [handler](const ReportReply& reply) { handler(reply.ok, reply.ok ? QString() : reply.desc); });
}

void FeedBackApi::send(const QByteArray& verb, const QNetworkRequest& request, const QByteArray& body,
                       QObject* context, const ReplyHandler& handler) {
    auto* network = new QNetworkAccessManager;
    auto* http = new HttpRequest(network, context);
    network->setParent(http);  // deleted first it would end the request, with a handler of what is half gone
    http->setLimits({m_timeOutMs, 0});
    connect(http, &HttpRequest::finished, context, [http, handler](const HttpAnswer& answer) {
        http->deleteLater();
        handler(ReportReply::of(answer));
    });
    http->send(verb, request, body);
}
