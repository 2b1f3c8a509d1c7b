#pragma once

#include <QNetworkRequest>
#include <QString>

/// Versions of what a reported program ran with, as they go into a report's headers.
struct BottleVersions {
    QString windowsVersion;
    QString emulatorVersion;  ///< for the caller to fill
    QString runner;

    /// From a bottle's record. An empty record gives empty versions and a warning with the bottle's name.
    static BottleVersions of(const QString& bottleName, const QJsonObject& record);
};

/// Where the report service is and what its requests look like. A value: made in the GUI thread, used in any.
struct ReportAccess {
    QString baseUrl;
    QString secret;

    /// From the settings feedback.cfg.base_url and feedback.cfg.secret, or else from the build. The secret is
    /// found once per process.
    static ReportAccess current();

    bool hasService() const { return !baseUrl.isEmpty(); }
    bool canSign() const { return hasService() && !secret.isEmpty(); }

    /// With the headers of this machine. `path` begins with a slash.
    QNetworkRequest request(const QString& path) const;
    /// A signed POST: the request's body, and its content type in the request.
    QByteArray signedBody(const QJsonObject& body, QNetworkRequest* request) const;
    /// The request's own headers, a line each, for a user to read.
    static QString headersText(const QNetworkRequest& request);
    static void addVersions(const BottleVersions& versions, QNetworkRequest* request);
};
