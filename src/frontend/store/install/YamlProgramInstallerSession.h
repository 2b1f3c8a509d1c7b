#pragma once

#include <QObject>
#include <QPointer>

#include "store/install/ManifestFacts.h"
#include "store/records/VeskClientAppInfo.h"

class SetupAppInfoDialog;
class YamlProgramInstaller;

namespace OpenAPI {
class VeskClientAppInfoQueryResponse;
class VeskClientHttpRequestWorker;
}  // namespace OpenAPI

/// One attempt to install an application of the store, or one of which the user has the manifest: fetches
/// record and manifest from the store, asks the user for the set-up program, and hands both to a
/// YamlProgramInstaller, which it owns. Ends once, in signalDone(), and deletes itself afterwards; a failure
/// comes before, in signalError(). The end of the process destroys it. GUI thread; nothing waits.
class YamlProgramInstallerSession : public QObject {
    Q_OBJECT
public:
    explicit YamlProgramInstallerSession(const OpenAPI::VeskClientAppInfo& app, QObject* parent = nullptr);
    /// The number and the key of an application whose record is not known yet.
    YamlProgramInstallerSession(const QString& appId, const QString& appInfoId, QObject* parent = nullptr);
    /// An application that is in no store; its bottle is named after the manifest's content.
    static YamlProgramInstallerSession* ofManifest(const QByteArray& yaml, QObject* parent = nullptr);
    ~YamlProgramInstallerSession() override;

    void start();

Q_SIGNALS:
    /// For the user; the application's name in it is untrusted.
    void signalError(const QString& text);
    void signalDone();

private:
    struct ParsedManifest {
        std::optional<ManifestFacts> facts;
        QString error;  ///< for the log
    };
    static ParsedManifest parse(const QByteArray& yaml);

    void endWithProcess();
    bool hasRecord() const;
    void fetchRecord();
    void onRecord(const OpenAPI::VeskClientAppInfoQueryResponse& answer);
    void takeRecord(const OpenAPI::VeskClientAppInfo& app);
    void findProgram();
    void fetchManifest();
    void parseManifest();
    void findProgramOf(const ParsedManifest& manifest);
    void onManifest(OpenAPI::VeskClientHttpRequestWorker* worker);
    void takeManifest(const ParsedManifest& manifest);
    void openDialog(const ManifestFacts& manifest);
    void onDialogFinished(int result);
    void startInstaller(const QString& setupFile);
    void failForNetwork();
    void fail(const QString& text);
    void endSetup();
    void end();

    OpenAPI::VeskClientAppInfo m_app;
    QString m_appInfoId;
    QString m_appIdText;
    QByteArray m_manifestBytes;
    QPointer<SetupAppInfoDialog> m_dialog;
    QPointer<YamlProgramInstaller> m_installer;
    bool m_hasManifest = false;  ///< from the user
    bool m_isSetup = false;      ///< registered as one
    bool m_isOver = false;
};
