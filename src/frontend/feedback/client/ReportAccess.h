#pragma once

#include <QCoreApplication>
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
    Q_DECLARE_TR_FUNCTIONS(ReportAccess)
public:
    QString baseUrl;
    QString secret;

    /// From the settings feedback.cfg.base_url and feedback.cfg.secret, or else from the build. The secret is
    /// found once per process.
    static ReportAccess current();

    bool hasService() const;  ///< there is a web address
    bool canSign() const { return hasService() && !secret.isEmpty(); }
    /// In a sentence for the user; empty when reports can be signed and sent.
    QString whyNot() const;
    /// Whether a file may go to an address that the service has named: a storage may be any host, but a
    /// service with https must not lead to where others can read along.
    bool trusts(const QUrl& storage) const;

    /// With the headers of this machine. `path` begins with a slash.
    QNetworkRequest request(const QString& path) const;
    /// A signed POST: the request's body, and its content type in the request.
    QByteArray signedBody(const QJsonObject& body, QNetworkRequest* request) const;
    /// The request's own headers, a line each, for a user to read.
    static QString headersText(const QNetworkRequest& request);
    static void addVersions(const BottleVersions& versions, QNetworkRequest* request);
};
