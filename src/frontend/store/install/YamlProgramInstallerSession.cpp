#include "store/install/YamlProgramInstallerSession.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QDebug>
#include <QFile>
#include <QIcon>
#include <QUrl>
#include <utility>

#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "programs/AppItemWidgetStateManager.h"
#include "store/client/StoreClient.h"
#include "store/client/VeskClientDefaultApi.h"
#include "store/client/VeskClientHttpRequestWorker.h"
#include "store/images/NetworkImageLoader.h"
#include "store/install/SetupAppInfoDialog.h"
#include "store/install/StoreProgram.h"
#include "store/install/YamlProgramInstaller.h"

using namespace OpenAPI;

namespace {

constexpr int GoodCode = 200;
constexpr int UnknownAppCode = 4000;
constexpr int IdDigits = 16;
constexpr int LoggedBytes = 4096;

VeskClientDefaultApi* makeClient(QObject* parent) {
    VeskClientDefaultApi* client = makeStoreClient({}, parent);
    QObject::connect(client, &VeskClientDefaultApi::allPendingRequestsCompleted, client,
                     &QObject::deleteLater);
    return client;
}

/// A body that the client has stored as a file is read and removed.
QByteArray bodyOf(const VeskClientHttpRequestWorker& worker) {
    const HttpFileElement file = worker.getHttpFileElement();
    if (file.local_filename.isEmpty())
        return worker.response;
    const QByteArray bytes = file.readFile();
    QFile::remove(file.local_filename);
    return bytes;
}

}  // namespace

YamlProgramInstallerSession::YamlProgramInstallerSession(const VeskClientAppInfo& app, QObject* parent)
    : QObject(parent),
      m_app(app),
      m_appInfoId(app.getAppInfoId()),
      m_appIdText(QString::number(app.getAppId())) {
    endWithProcess();
}

YamlProgramInstallerSession::YamlProgramInstallerSession(const QString& appId, const QString& appInfoId,
                                                         QObject* parent)
    : QObject(parent), m_appInfoId(appInfoId), m_appIdText(appId) {
    endWithProcess();
}

YamlProgramInstallerSession* YamlProgramInstallerSession::ofManifest(const QByteArray& yaml,
                                                                     QObject* parent) {
    const QByteArray sum = QCryptographicHash::hash(yaml, QCryptographicHash::Sha256).toHex();
    auto* session = new YamlProgramInstallerSession(QString::fromLatin1(sum.left(IdDigits)), {}, parent);
    session->m_manifestBytes = yaml;
    session->m_hasManifest = true;
    return session;
}

/// While there is still a bus to cancel the set-up of the bottle.
void YamlProgramInstallerSession::endWithProcess() {
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { delete this; });
}

YamlProgramInstallerSession::~YamlProgramInstallerSession() {
    m_isOver = true;
    delete m_dialog;
    delete m_installer;
    endSetup();
}

void YamlProgramInstallerSession::start() {
    if (m_hasManifest)
        parseManifest();
    else if (hasRecord())
        findProgram();
    else
        fetchRecord();
}

bool YamlProgramInstallerSession::hasRecord() const {
    return m_app.is_appId_Set() && m_app.isValid();
}

void YamlProgramInstallerSession::fetchRecord() {
    VeskClientDefaultApi* client = makeClient(this);
    connect(client, &VeskClientDefaultApi::getAppInfoSignal, this, &YamlProgramInstallerSession::onRecord);
    connect(client, &VeskClientDefaultApi::getAppInfoSignalErrorFull, this,
            [this](VeskClientHttpRequestWorker*, QNetworkReply::NetworkError type, const QString& text) {
                qWarning() << "Failed to query appinfo: " << type << ", " << text;
                takeRecord({});
            });
    client->getAppInfo(m_appIdText, m_appInfoId);
}

void YamlProgramInstallerSession::onRecord(const VeskClientAppInfoQueryResponse& answer) {
    if (answer.getCode() == UnknownAppCode) {
        fail(tr("Failed to fetch setup manifest, the application does not exist"));
        return;
    }
    if (answer.getCode() != GoodCode)
        qWarning() << "Failed to query appinfo: " << answer.getCode();
    takeRecord(answer.getCode() == GoodCode ? answer.getData().getAppInfo() : VeskClientAppInfo());
}

void YamlProgramInstallerSession::takeRecord(const VeskClientAppInfo& app) {
    m_app = app;
    if (!hasRecord()) {
        failForNetwork();
        return;
    }
    m_appInfoId = m_app.getAppInfoId();
    m_appIdText = QString::number(m_app.getAppId());
    findProgram();
}

void YamlProgramInstallerSession::findProgram() {
    StoreProgram::find(m_app, this, [this](const ProgramRef& program) {
        if (program.uuid.isEmpty())
            fetchManifest();
        else
            fail(tr("%1 has been installed").arg(m_app.getAppName()));
    });
}

void YamlProgramInstallerSession::fetchManifest() {
    VeskClientDefaultApi* client = makeClient(this);
    connect(client, &VeskClientDefaultApi::downloadYmlSignalE, this,
            &YamlProgramInstallerSession::failForNetwork);
    connect(client, &VeskClientDefaultApi::downloadYmlSignalFull, this,
            &YamlProgramInstallerSession::onManifest);
    client->downloadYml(m_appInfoId);
}

void YamlProgramInstallerSession::onManifest(VeskClientHttpRequestWorker* worker) {
    m_manifestBytes = bodyOf(*worker);
    parseManifest();
}

void YamlProgramInstallerSession::parseManifest() {
    inBackground(
        this, [bytes = m_manifestBytes] { return parse(bytes); },
        [this](const ParsedManifest& manifest) {
            if (m_hasManifest && manifest.facts)
                findProgramOf(manifest);
            else
                takeManifest(manifest);
        });
}

void YamlProgramInstallerSession::findProgramOf(const ParsedManifest& manifest) {
    m_app.setAppName(manifest.facts->name);
    StoreProgram::findIn({StoreProgram::bottle(m_appIdText)}, m_app.getAppName(), this,
                         [this, manifest](const ProgramRef& program) {
                             if (program.uuid.isEmpty())
                                 takeManifest(manifest);
                             else
                                 fail(tr("%1 has been installed").arg(m_app.getAppName()));
                         });
}

YamlProgramInstallerSession::ParsedManifest YamlProgramInstallerSession::parse(const QByteArray& yaml) {
    ParsedManifest manifest;
    manifest.facts = ManifestFacts::read(yaml, &manifest.error);
    return manifest;
}

void YamlProgramInstallerSession::takeManifest(const ParsedManifest& manifest) {
    if (!manifest.facts) {
        qWarning() << "failed to load yaml contents, response: " << m_manifestBytes.left(LoggedBytes)
                   << manifest.error;
        if (m_hasManifest)
            fail(tr("The manifest cannot be read."));
        else
            failForNetwork();
        return;
    }
    m_isSetup = true;
    AppItemWidgetStateManager::instance()->startSetup(m_appIdText);
    openDialog(*manifest.facts);
}

void YamlProgramInstallerSession::openDialog(const ManifestFacts& manifest) {
    m_dialog =
        new SetupAppInfoDialog(SetupAppInfo::of(m_app, manifest), manifest, QApplication::activeWindow());
    connect(m_dialog, &SetupAppInfoDialog::slotsOpenAppStorePage, this,
            [dialog = m_dialog.data()](const QString& package) {
                DesktopUtils::openInAppStore(package, dialog,
                                             [dialog, package] { dialog->tellNoStore(package); });
            });
    connect(m_dialog, &QDialog::finished, this, &YamlProgramInstallerSession::onDialogFinished);
    // The window that it lies over may go with it.
    connect(m_dialog, &QObject::destroyed, this, [this] {
        if (!m_installer)
            end();
    });
    m_dialog->open();
}

void YamlProgramInstallerSession::onDialogFinished(int result) {
    const QString setupFile = m_dialog->filePath();
    if (result == SetupAppInfoDialog::InstallButton && !setupFile.isEmpty())
        startInstaller(setupFile);
    if (m_dialog)
        m_dialog->deleteLater();
    if (!m_installer)
        end();
}

void YamlProgramInstallerSession::startInstaller(const QString& setupFile) {
    qInfo().noquote() << "start install app: " << m_appIdText << m_app.getAppName() << setupFile;
    m_installer = new YamlProgramInstaller(StoreProgram::bottle(m_appIdText),
                                           QString::fromLatin1(m_manifestBytes.toBase64()), setupFile, this);
    m_installer->setDisplayName(m_app.getAppName());
    connect(m_installer, &QObject::destroyed, this, &YamlProgramInstallerSession::end);
    const QUrl icon = NetworkImageLoader::webUrl(m_app.getIconSaveKey());
    NetworkImageLoader* images = NetworkImageLoader::instance();
    connect(images, &NetworkImageLoader::imageLoaded, m_installer,
            [installer = m_installer.data(), icon](const QUrl& url, const QPixmap& picture) {
                if (url == icon)
                    installer->setIcon(QIcon(picture));
            });
    // A picture that has to be fetched comes while the installer runs.
    if (!icon.isEmpty())
        images->load(icon);
    qInfo().noquote() << "start install ... " << m_appIdText;
    m_installer->start();
}

void YamlProgramInstallerSession::failForNetwork() {
    fail(tr("Failed to fetch setup manifest, please check your network"));
}

void YamlProgramInstallerSession::fail(const QString& text) {
    if (m_isOver)
        return;
    Q_EMIT signalError(text);
    end();
}

/// Another session of the same application may be in its set-up.
void YamlProgramInstallerSession::endSetup() {
    if (std::exchange(m_isSetup, false))
        AppItemWidgetStateManager::instance()->onSetupingYmlDone(m_appIdText, {}, false);
}

void YamlProgramInstallerSession::end() {
    if (m_isOver)
        return;
    m_isOver = true;
    endSetup();
    Q_EMIT signalDone();
    deleteLater();
}
