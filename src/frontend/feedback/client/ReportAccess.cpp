#include "feedback/client/ReportAccess.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QUrl>

#include "backend/BottleRecord.h"
#include "core/base/BuildInfo.h"
#include "core/base/SettingsStore.h"
#include "feedback/client/FeedbackDeployment.h"
#include "feedback/client/ReportSignature.h"
#include "net/LoggedAddress.h"
#include "probes/HardwareInfo.h"
#include "probes/MachineUtils.h"

namespace {

constexpr int LongestHeader = 512;

/// Texts from a bottle or the system could otherwise begin a header of their own.
QByteArray headerValue(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control)
            c = ' ';
    }
    return text.trimmed().left(LongestHeader).toUtf8();
}

QString findSecret() {
    QString secret = settingsStore()->getOption("feedback.cfg.secret").toString();
    if (secret.isEmpty()) {
        secret = FeedbackDeployment::decoded(FeedbackDeployment::reportSecret());
        if (secret.isEmpty() && !FeedbackDeployment::reportSecret().isEmpty())
            qWarning("the report secret of this build is not written in pairs of hexadecimal digits");
    }
    qDebug().noquote() << "Using sec:" << (secret.isEmpty() ? "none" : "***");
    return secret;
}

}  // namespace

BottleVersions BottleVersions::of(const QString& bottleName, const QJsonObject& record) {
    if (record.isEmpty())
        qWarning().noquote() << "get bottles config failed: " + bottleName;
    return {BottleRecord::windows(record), {}, BottleRecord::runner(record)};
}

ReportAccess ReportAccess::current() {
    static const QString secret = findSecret();
    const QString custom = settingsStore()->getOption("feedback.cfg.base_url").toString();
    if (!custom.isEmpty())
        qInfo().noquote() << "Using custom base url:" << loggedAddress(QUrl(custom));
    return {custom.isEmpty() ? FeedbackDeployment::reportUrl() : custom, secret};
}

bool ReportAccess::hasService() const {
    const QUrl url(baseUrl);
    return (url.scheme() == "http" || url.scheme() == "https") && !url.host().isEmpty();
}

QString ReportAccess::whyNot() const {
    if (baseUrl.isEmpty())
        return tr("This version has no address to send to.");
    if (!hasService())
        return tr("The address of the report service is not a web address.");
    return secret.isEmpty() ? tr("The secret that the report service asks for is missing.") : QString();
}

bool ReportAccess::trusts(const QUrl& storage) const {
    return storage.scheme() == "https" || QUrl(baseUrl).scheme() != "https";
}

QNetworkRequest ReportAccess::request(const QString& path) const {
    static const QByteArray system = headerValue(MachineUtils::osVersion());  // does not change, may warn
    QNetworkRequest request(QUrl(baseUrl + path));
    // These headers are for this server alone.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    request.setRawHeader("X-Device-Id", headerValue(machineId()));
    request.setRawHeader("X-Device-Arch", headerValue(MachineUtils::cpuArchitecture()));
    request.setRawHeader("X-Client-Ver", headerValue(BuildInfo::version()));
    request.setRawHeader("X-System-Info", system);
    request.setRawHeader("AcceptLanguage", QLocale().name() == "zh_CN" ? "zh_CN" : "en_US");
    return request;
}

QByteArray ReportAccess::signedBody(const QJsonObject& body, QNetworkRequest* request) const {
    request->setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    return QJsonDocument(ReportSignature::sign(body, secret)).toJson(QJsonDocument::Compact);
}

QString ReportAccess::headersText(const QNetworkRequest& request) {
    QString text;
    for (const QByteArray& name : request.rawHeaderList())
        text += QString::fromUtf8(name + ": " + request.rawHeader(name) + '\n');
    return text;
}

void ReportAccess::addVersions(const BottleVersions& versions, QNetworkRequest* request) {
    request->setRawHeader("X-Wine-Ver", headerValue(versions.runner));
    request->setRawHeader("X-Windows-Ver", headerValue(versions.windowsVersion));
    request->setRawHeader("X-Simulator-Ver", headerValue(versions.emulatorVersion));
}
