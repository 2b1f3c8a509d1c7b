#pragma once

#include <QJsonObject>
#include <QObject>
#include <QVector>
#include <functional>

#include "feedback/client/ReportAccess.h"

struct ReportReply;

/// One kind of problem that a report can be about. The texts are untrusted.
struct IssueType {
    QString id;
    QString name;
    QString enName;
};

struct AppScoreRequest {
    static constexpr int LongestText = 50;  ///< characters of a name or version that are sent

    int score = 0;
    QString appName;
    QString appVersion;
    QString cfgFileKey;  ///< of an uploaded archive; empty for none

    /// As the service takes it, before it is signed.
    QJsonObject body() const;
};

/// The client of the report service: kinds of problems, reports, ratings. Each call returns at once and ends
/// in its handler, later and exactly once, within TimeOutMs; never when context is destroyed first, which
/// also ends the request. Where no service is configured nothing is sent, and the handler is told so. GUI
/// thread.
class FeedBackApi : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    static constexpr int TimeOutMs = 5000;
    void setTimeOut(int ms) { m_timeOutMs = ms; }

    using IssueTypesHandler = std::function<void(const QVector<IssueType>& types)>;
    /// `desc` says why not: the service's words, untrusted, or this program's; may be empty.
    using SubmitHandler = std::function<void(bool ok, const QString& desc)>;

    /// No types on every failure.
    void getIssueTypes(QObject* context, const IssueTypesHandler& handler);
    void submitFeedback(const QJsonObject& json, const BottleVersions& versions, QObject* context,
                        const SubmitHandler& handler);
    void submitAppScore(const AppScoreRequest& score, const BottleVersions& versions, QObject* context,
                        const SubmitHandler& handler);

private:
    using ReplyHandler = std::function<void(const ReportReply&)>;
    void submit(const QString& path, const QJsonObject& body, const BottleVersions& versions,
                QObject* context, const SubmitHandler& handler);
    void send(const QByteArray& verb, const QNetworkRequest& request, const QByteArray& body,
              QObject* context, const ReplyHandler& handler);

    int m_timeOutMs = TimeOutMs;
};
