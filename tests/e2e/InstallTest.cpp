#include <QAbstractButton>
#include <QApplication>
#include <QCryptographicHash>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QStandardPaths>
#include <QtTest>

#include "backend/PendingWork.h"
#include "core/base/SettingsStore.h"
#include "e2e/InstalledApp.h"
#include "programs/ProgramRuns.h"
#include "programs/RunStateButton.h"
#include "store/install/FileSelectWidget.h"
#include "store/install/SetupAppInfoDialog.h"
#include "store/install/StoreProgram.h"
#include "store/install/YamlProgramInstallerBanner.h"
#include "store/install/YamlProgramInstallerSession.h"
#include "store/view/AppStoreView.h"
#include "store/view/StoreAppItemUI.h"
#include "support/HttpServer.h"
#include "support/Table.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 180000;
const char SampleTitle[] = "Cellarix sample window";
const char Manifest[] =
    "Name: Seven\nDebInfo: {wine_cmd: lumora-wine8-stable, wine_deps: ''}\n"
    "Bottle:\n  Windows: win10\n  Files: [{Path: 'c:\\seven\\seven.ini', Text: 'seven'}]\n";
const char Record[] =
    R"({"appId":7,"appInfoId":"k7","appName":"Seven","iconSaveKey":"","packageSize":1,"packageVersion":"1",)"
    R"("briefInfo":"","descInfo":"","score":0,"recommend":0,"devName":"","devEmail":"","officialSite":"",)"
    R"("downloadUrl":""})";

template <class Window>
Window* shown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<Window*>(widget);
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

void callApplication(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall("com.lumora.Cellarix", "/com/lumora/Cellarix",
                                                       "com.lumora.Cellarix", method);
    call.setArguments(arguments);
    QDBusConnection::sessionBus().call(call);
}

}  // namespace

/// An application of a store on this machine, set up by the real service and on real Wine.
class InstallTest : public QObject {
    Q_OBJECT

    HttpServer m_server;
    QTemporaryDir m_dir;
    WindowFinder m_windows;
    QPointer<YamlProgramInstallerSession> m_session;
    QStringList m_errors;
    std::unique_ptr<AppStoreView> m_page;
    QString m_bottle;

    QJsonObject programs() const {
        return bottlesJson("get", {m_bottle}).object()["External_Programs"].toObject();
    }

    void start() {
        m_errors.clear();
        m_session = m_bottle == "program-7" ? new YamlProgramInstallerSession("7", "k7")
                                            : YamlProgramInstallerSession::ofManifest(Manifest);
        connect(m_session, &YamlProgramInstallerSession::signalError, this,
                [this](const QString& text) { m_errors << text; });
        m_session->start();
    }

    /// The button of the only card of the store's page.
    RunStateButton* button() const {
        auto* card = m_page->findChild<StoreAppItemUI*>();
        return card ? card->button() : nullptr;
    }
    bool says(const QString& text) const { return button() && button()->text() == text; }

    void openPage() {
        m_page = std::make_unique<AppStoreView>();
        m_page->resize(760, 600);
        m_page->show();
        QTRY_VERIFY(says("Install"));
    }

    /// As far as the banner.
    void choose(const QString& file) {
        if (m_page)
            button()->click();
        else
            start();
        QTRY_VERIFY_WITH_TIMEOUT(shown<SetupAppInfoDialog>(), LongMs);
        auto* dialog = shown<SetupAppInfoDialog>();
        dialog->findChild<FileSelectWidget*>()->setFile(file);
        QTRY_VERIFY_WITH_TIMEOUT(dialog->button(1)->isEnabled(), LongMs);
        QCOMPARE(dialog->button(1)->text(), QString("Install"));
        dialog->button(1)->click();
        QTRY_VERIFY(shown<YamlProgramInstallerBanner>());
    }

    bool isFailed() const {
        auto* banner = shown<YamlProgramInstallerBanner>();
        return banner && banner->closeState() == WineExeLaunchBanner::Failed;
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("setup").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        QApplication::setQuitOnLastWindowClosed(false);
        settingsStore()->setOption("client.base_url.", m_server.address({}).chopped(1));
    }
    void init() {
        m_bottle = "program-7";
        m_server.files = {
            {"appInfo?appId=7&appInfoId=k7", QByteArray(R"({"code":200,"data":{"AppInfo":)") + Record + "}}"},
            {"appInfo?appId=8&appInfoId=k8", R"({"code":4000})"},
            {"k7", Manifest},
            {"categories", R"({"code":200,"data":{"list":[]}})"},
            {"apps?pageIndex=1&pageSize=20&field=update_time&sort=desc",
             QByteArray(R"({"code":200,"data":{"list":[)") + Record + "]}}"}};
    }
    void cleanup() {
        delete m_session;
        m_page.reset();
        if (bottleNames().contains(m_bottle))
            callBottles("delete", {m_bottle});
    }

    void installs_data() {
        // sample: see installer.nsi and setup.cpp; user: what is done meanwhile
        const Table<QString, QString, QString> row("sample", "user", "programs");
        row("installer, from a card", "setup_links", "card", "window.exe");
        row("installer that installs nothing", "setup_nothing", "", "");
        row("portable program", "window", "close window", "seven-window.exe");
        row("manifest of the user", "window", "manifest close window", "seven-window.exe");
        row("cancelled while the bottle is made", "setup_links", "cancel setup", "");
        row("cancelled while the installer runs", "setup", "cancel run", "");
        row("a component that there is not", "setup_links", "fail", "");
    }
    void installs() {
        QFETCH(QString, sample);
        QFETCH(QString, user);
        QFETCH(QString, programs);
        const QString file =
            sampleAs(sample, m_dir.path(),
                     "seven-" + sample + (user == "cancel run" ? "-nothing-hidden" : "") + ".exe");
        if (file.isEmpty())
            QSKIP("the installer was not built");
        if (user == "fail")
            m_server.files["k7"].replace("  Windows: win10\n", "  Dependencies: [no-such-component]\n");
        if (user == "card")
            openPage();
        if (user.startsWith("manifest"))
            m_bottle =
                "program-" + QCryptographicHash::hash(Manifest, QCryptographicHash::Sha256).toHex().left(16);
        choose(file);
        const QPointer<YamlProgramInstallerBanner> banner = shown<YamlProgramInstallerBanner>();
        if (user.endsWith("close window")) {
            QTRY_VERIFY_WITH_TIMEOUT(!banner->isVisible(), LongMs);
            QVERIFY(m_windows.close(m_windows.byTitle(SampleTitle).id));
        } else if (user == "cancel setup") {
            QTRY_VERIFY_WITH_TIMEOUT(isFailed() || banner->findChild<QLabel*>("status")->text().contains('%'),
                                     LongMs);
            QVERIFY2(!isFailed(), qPrintable(banner->findChild<QLabel*>("description")->text()));
            Q_EMIT banner->stopRunning();
        } else if (user == "cancel run") {
            const QString log =
                QDir::homePath() + "/.local/share/lumora-wine-bottles/bottles/program-7/logs/";
            QTRY_VERIFY_WITH_TIMEOUT(!QDir(log).entryList({"wine-*"}).isEmpty(), LongMs);
            Q_EMIT banner->stopRunning();
        } else if (user == "fail") {
            QTRY_VERIFY_WITH_TIMEOUT(isFailed(), LongMs);
            QTRY_COMPARE(banner->findChild<QLabel*>("status")->text(), QString("Manifest file setup failed"));
            QVERIFY(banner->findChild<QLabel*>("description")->text().contains("no-such-component"));
            banner->close();
        }
        QTRY_VERIFY2_WITH_TIMEOUT(!m_session, qPrintable(m_errors.join('\n')), LongMs);
        QCOMPARE(m_errors, QStringList());
        if (m_page)
            QTRY_VERIFY_WITH_TIMEOUT(says("Run"), LongMs);
        QVERIFY(!banner);
        QTRY_VERIFY_WITH_TIMEOUT(!PendingWork::instance()->isPending(), LongMs);
        QStringList found;
        for (const QJsonValue& program : InstallTest::programs())
            found += program.toObject()["path"].toString().section('\\', -1).section('/', -1);
        QCOMPARE(found.join(' '), programs);
        QTRY_COMPARE_WITH_TIMEOUT(bottleNames().contains(m_bottle), !programs.isEmpty(), LongMs);
        if (m_page)
            runsAndQuits();
    }

    /// A process that waits for the bus ends after an installation, also one that came to nothing.
    void endsAService_data() {
        const Table<QString, QString> row("appId", "appInfoId");
        row("unknown", "8", "k8");
        row("given up", "7", "k7");
    }
    void endsAService() {
        QFETCH(QString, appId);
        QFETCH(QString, appInfoId);
        const QString settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                                 "/lumora/cellarix/settings.conf";
        InstalledApp::acceptAgreement();
        QFile file(settings);
        QVERIFY(file.open(QIODevice::Append));
        file.write("[client]\nbase_url.=" + m_server.address({}).chopped(1).toUtf8() + "\n");
        file.close();
        InstalledApp app({"--service"});
        QVERIFY2(app.waitForLog("cellarix start"), qPrintable(app.log()));
        QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered("com.lumora.Cellarix"));
        callApplication("installProgram", {appId, appInfoId});
        if (appId == "7") {
            const QString title = "Please select the installation program";
            QTRY_VERIFY2_WITH_TIMEOUT(m_windows.byTitle(title).id, qPrintable(app.log()), LongMs);
            callApplication("installProgram", {"8", "k8"});
            QVERIFY(app.isRunning() && !app.log().contains("Installing program: \"8\""));
            QVERIFY(m_windows.close(m_windows.byTitle(title).id));
        }
        // The server of the store answers in this event loop.
        QTRY_VERIFY2_WITH_TIMEOUT(!app.isRunning(), qPrintable(app.log()), LongMs);
        QCOMPARE(app.waitForExit(), 0);
        QVERIFY2(app.log().contains("Installing program:"), qPrintable(app.log()));
    }

private:
    /// What was installed is found again, and is not installed twice.
    void runsAndQuits() {
        ProgramRef ref;
        StoreProgram::find(OpenAPI::VeskClientAppInfo(QString(Record)), this,
                           [&](const ProgramRef& found) { ref = found; });
        QTRY_COMPARE(ref.bottle, m_bottle);
        start();
        QTRY_VERIFY(!m_session);
        QCOMPARE(m_errors, QStringList("Seven has been installed"));
        ProgramRuns::instance()->load();
        button()->click();
        QTRY_VERIFY_WITH_TIMEOUT(m_windows.byTitle(SampleTitle).id, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(says("Quit"), LongMs);
        // A click right after the one before counts as a double click.
        const auto quits = [this] {
            if (says("Quit"))
                button()->click();
            return !m_windows.byTitle(SampleTitle).id;
        };
        QTRY_VERIFY_WITH_TIMEOUT(quits(), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(says("Run"), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(!ProgramRuns::instance()->isRunning(ref), LongMs);
    }
};

QTEST_MAIN(InstallTest)
#include "InstallTest.moc"
