#include "store/install/YamlProgramInstaller.h"

#include <QApplication>
#include <QJsonArray>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

#include "backend/PendingWork.h"
#include "component/launch/LaunchFixture.h"
#include "launch/banner/BannerCloseConfirmDialog.h"
#include "store/install/YamlProgramInstallerBanner.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "widgets/LogsWidget.h"

using namespace TestSupport;

namespace {

const char Bottle[] = "program-7";
const char Path[] = "/com/lumora/Manager/InstallerManager";
const char Interface[] = "com.lumora.Manager.InstallerManager";

}  // namespace

/// The installer with a service that does as it is told, and with the real launch script.
class YamlInstallerTest : public QObject, private LaunchFixture {
    Q_OBJECT

    QPointer<YamlProgramInstaller> m_installer;
    QString m_file;

    YamlProgramInstallerBanner* banner() const {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<YamlProgramInstallerBanner*>(window))
                return found;
        }
        return nullptr;
    }
    QString text(const char* name) const { return banner()->findChild<QLabel*>(name)->text(); }

    void tell(const QString& signal, const QString& signature, const QJsonArray& arguments) {
        QVERIFY(m_service->emitSignal(Path, Interface, signal, signature, arguments));
    }
    void tellDone(const QString& bottle = Bottle) { tell("setupSuccessed", "s", {bottle}); }

    void start(const QByteArray& content = "MZ") {
        m_file = m_home.write("files/setup.exe", content);
        m_installer = new YamlProgramInstaller(Bottle, "WQ==", m_file);
        m_installer->setDisplayName("Seven");
        m_installer->start();
        m_service->waitForCall("setupYaml");
    }

    QStringList log() const {
        for (QWidget* widget : QApplication::allWidgets()) {
            if (auto* logs = qobject_cast<LogsWidget*>(widget))
                return logs->lastLines(40);
        }
        return {};
    }

    /// What the service was told to change, in order.
    QString changes() {
        QStringList told;
        for (const RecordedCall& call : m_service->calls()) {
            if (QStringList{"cancelSetup", "updateExternalProgram", "deleteIfUnused", "delete",
                            "killWineServer"}
                    .contains(call.method))
                told << call.method;
        }
        return told.join(' ');
    }

    QJsonObject lastEvent() const {
        const QByteArray events = readFile(m_home.path() + "/.local/state/lumora-event-log/cellarix.jsonl");
        return QJsonDocument::fromJson(events.trimmed().split('\n').last()).object();
    }

private Q_SLOTS:
    void init() {
        QVERIFY(startService());
        makeBottle(Bottle, {{"Runner", "r"}});
        m_service->setJson("deleteIfUnused", QJsonObject{{"deleted", true}});
    }
    void cleanup() {
        delete m_installer;
        stopService();
    }

    void showsTheSetup() {
        start();
        QVERIFY(banner() && banner()->isVisible());
        QCOMPARE(text("status"), QString("Preparing to installing"));
        QCOMPARE(text("description"), QString("Please wait, it may take a few minutes..."));
        // Of another bottle; then nothing of it may be seen when the next text is.
        tell("setupTitleChanged", "ss", {"program-8", "Foreign"});
        tell("setupFailed", "ss", {"program-8", "{}"});
        tell("setupProgressChanged", "sii", {Bottle, 1, 4});
        tell("setupTitleChanged", "ss", {Bottle, "Components"});
        tell("setupDescriptionChanged", "ssi", {Bottle, "kept", 0});
        tell("setupDescriptionChanged", "ssi", {Bottle, "of the moment", 1});
        QTRY_COMPARE(text("description"), QString("of the moment"));
        QTRY_COMPARE(text("status"), QString("Components ... 25%"));
        QCOMPARE(banner()->findChild<QProgressBar*>("setup_bar")->value(), 25);
        QCOMPARE(log(), QStringList({"Components", "kept"}));
    }

    void fails_data() {
        const Table<QString, QString> row("way", "error");
        row("told", "no room", "no room");
        row("told no reason", "", "");
        row("no JSON", "?", "");
        row("refused", "refused", "not now");
        row("dies", "dies", "The bottle service has ended unexpectedly.");
    }
    void fails() {
        QFETCH(QString, way);
        QFETCH(QString, error);
        if (way == "refused")
            m_service->setError("setupYaml", "not now");
        start();
        tell("setupTitleChanged", "ss", {Bottle, "A"});
        if (way == "dies")
            m_service->kill();
        else if (way != "refused")
            tell("setupFailed", "ss",
                 {Bottle, way == "?" ? "?" : "{\"ok\":false,\"error\":\"" + way + "\"}"});
        QTRY_COMPARE(banner()->closeState(), int(WineExeLaunchBanner::Failed));
        QTRY_COMPARE(text("status"), QString("Manifest file setup failed"));
        QStringList lines{"Setup installer failed"};
        if (!error.isEmpty())
            lines << "Error message: " + error;
        QStringList told = log();
        told.removeAll("A");
        QCOMPARE(told, lines);
        if (!error.isEmpty())
            QTRY_COMPARE(text("description"), error);
        QVERIFY(!banner()->findChild<QProgressBar*>("setup_bar")->isVisible());
        if (way == "told") {
            // Too late: the failed bottle is not run in.
            tellDone();
            tell("setupTitleChanged", "ss", {Bottle, "B"});
            tell("setupFailed", "ss", {Bottle, "{\"error\":\"again\"}"});
            QVERIFY(!m_service->waitForCall("setupYaml").method.isEmpty());
            QCOMPARE(log().size(), 3);
        }
        banner()->close();
        QTRY_VERIFY(!m_installer && !banner());
        if (way != "dies")
            QCOMPARE(changes(), QString());
        QTRY_COMPARE(lastEvent()["successed"].toString(), QString("no"));
        QCOMPARE(lastEvent()["bottle_setuped"].toString(), QString("no"));
    }

    /// Asked for in the banner: the question's own words, and no answer is no cancel.
    void cancelsTheSetup() {
        start();
        for (const bool isMeant : {false, true}) {
            banner()->close();
            auto* question = banner()->findChild<BannerCloseConfirmDialog*>();
            QVERIFY(question && question->isVisible());
            QCOMPARE(question->button(0)->text(), QString("Cancel Installation"));
            question->button(isMeant ? 0 : 1)->click();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(changes().isEmpty(), !isMeant || changes().isEmpty());
        }
        QTRY_VERIFY(!m_installer && !banner());
        QTRY_COMPARE(changes(), QString("cancelSetup deleteIfUnused"));
        QTRY_VERIFY(!PendingWork::instance()->isPending());
        const QJsonObject event = lastEvent();
        QCOMPARE(event["action"].toString() + event["canceled"].toString() + event["exename"].toString(),
                 QString("setup_ymlyessetup.exe"));
    }

    void isCancelledByItsEnd() {
        start();
        delete m_installer;
        QCOMPARE(m_service->waitForCall("cancelSetup").arguments, QJsonArray({Bottle}));
    }

    void runs_data() {
        const Table<QString, QString, QString, QString, QString> row("program", "user", "programs", "changes",
                                                                     "event");
        row("portable", "show", "close window", "", "updateExternalProgram", "yes no");
        row("set-up with programs", "show", "setup, close window", "C:\\a.exe", "", "yes no");
        row("set-up without", "show", "setup, close window", "", "deleteIfUnused", "yes no");
        row("set-up without, but with files", "show", "setup, files, close window", "",
            "deleteIfUnused updateExternalProgram", "yes no");
        row("already there", "show", "close window", "self", "", "yes no");
        row("fails", "wait_for close; rm close", "close", "", "updateExternalProgram", "no no");
        row("stopped", "touch alive; wait_for close", "stop", "", "killWineServer updateExternalProgram",
            "no yes");
        row("told twice", "show", "twice, close window", "", "updateExternalProgram", "yes no");
    }
    void runs() {
        QFETCH(QString, program);
        QFETCH(QString, user);
        QFETCH(QString, programs);
        QByteArray content = "MZ";
        if (user.startsWith("setup")) {
            content = readFile(TEST_BINARY_DIR "/tests/programs/x64/setup_nothing.exe");
            if (content.isEmpty())
                QSKIP("the installer was not built");
        }
        if (user.contains("files"))
            m_service->setJson("deleteIfUnused", QJsonObject{{"deleted", false}, {"programs", QJsonArray()}});
        m_standIn.write("program", program.toUtf8());
        LogCapture log;
        start(content);
        if (!programs.isEmpty())
            m_service->setBottle(
                Bottle,
                {{"Path", m_standIn.directory()},
                 {"Runner", "r"},
                 {"External_Programs",
                  QJsonObject{{"u", QJsonObject{{"path", programs == "self" ? m_file : programs}}}}}});
        m_service->clearCalls();
        tellDone();
        if (user.startsWith("twice"))
            tellDone();
        QTRY_COMPARE(text("status"), QString("Launching"));
        QVERIFY(!banner()->findChild<QProgressBar*>("setup_bar")->isVisible());
        if (user.endsWith("window")) {
            QTRY_VERIFY_WITH_TIMEOUT(!banner()->isVisible(), LaunchMs);
            m_standIn.write("close", "");
        } else if (user == "stop") {
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_standIn.directory() + "/alive"), LaunchMs);
            Q_EMIT banner()->stopRunning();
        } else {
            m_standIn.write("close", "");
            QTRY_COMPARE_WITH_TIMEOUT(banner()->closeState(), int(WineExeLaunchBanner::Failed), LaunchMs);
            banner()->close();
        }
        QTRY_VERIFY_WITH_TIMEOUT(!m_installer && !banner(), LaunchMs);
        QCOMPARE(readFile(m_standIn.directory() + "/runs"), QByteArray("\n"));
        QTEST(changes(), "changes");
        QTRY_VERIFY(!PendingWork::instance()->isPending());
        const QJsonObject event = lastEvent();
        QTEST(event["successed"].toString() + ' ' + event["canceled"].toString(), "event");
        QCOMPARE(event["bottle_setuped"].toString() + event["runner"].toString(), QString("yesr"));
        QCOMPARE(log.count("setup ok, start to execute program"), 1);
    }
};

QTEST_MAIN(YamlInstallerTest)
#include "YamlInstallerTest.moc"
