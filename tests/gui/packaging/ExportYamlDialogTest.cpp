#include "packaging/manifest/ExportYamlDialog.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <memory>

#include "core/base/SettingsStore.h"
#include "feedback/client/AliyunGreenApi.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "packaging/manifest/ManifestExporter.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::LogCapture;
using TestSupport::Table;

namespace {
const char Categories[] =
    R"({"code":200,"data":{"list":[{"id":1,"name":"Office"},{"id":2,"name":"Games"}]}})";
}

/// The dialog between a store, a moderation service, a bottle service and a file manager.
class ExportYamlDialogTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<TestSupport::HttpServer> m_server;
    QPointer<ExportYamlDialog> m_dialog;

    QLineEdit* field(const QString& name) const { return m_dialog->findChild<QLineEdit*>(name); }
    QPlainTextEdit* introduction() const {
        return m_dialog->findChild<QPlainTextEdit*>("export_introduction");
    }
    QComboBox* categories() const { return m_dialog->findChild<QComboBox*>("export_category"); }
    QAbstractButton* ok() const { return m_dialog->button(1); }
    QString floating() const {
        const auto* message = m_dialog->findChild<Fenk::FloatingMessage*>();
        return message ? message->text() : QString();
    }

    void open(const QString& moderation = {}, bool hasStore = true) {
        const QJsonObject program{{"name", "Paint"}, {"icon", "/none"}};
        m_service->setBottle("office",
                             {{"Path", m_home.path()}, {"External_Programs", QJsonObject{{"u", program}}}});
        if (hasStore)
            m_server->files["categories"] = Categories;
        auto* api = new AliyunGreenApi("id", "secret");
        api->setEndpoint(moderation.isEmpty() ? QString() : m_server->address(moderation));
        m_dialog = new ExportYamlDialog("office", "u", api, nullptr);
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog));
        QTRY_COMPARE(field("export_name")->text(), QString("Paint"));
        QTRY_COMPARE(categories()->count(), hasStore ? 3 : 1);
    }
    void type(const QString& name, const QString& text) {
        field("export_" + name)->clear();
        QTest::keyClicks(field("export_" + name), text);
    }
    void fill() {
        introduction()->setPlainText("Draws");
        categories()->setCurrentText("Games");
        type("url", "http://a.example");
        type("size", "84.5");
        type("contributor", "Ann");
        type("email", "a@b.cd");
    }

private Q_SLOTS:
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
        m_server = std::make_unique<TestSupport::HttpServer>();
        settingsStore()->setOption("client.base_url.", m_server->address({}).chopped(1));
        QFile::remove(m_home.path() + "/dump-manifest.json");
    }
    void cleanup() {
        delete m_dialog;
        m_service.reset();
    }

    void exports() {
        const QString manifest = m_home.path() + "/manifest.yml";
        QVERIFY(m_service->takeName("org.freedesktop.FileManager1"));
        m_service->setAnswers("ShowItems", {{{"empty", true}}});
        m_service->setText("dumpManifest", manifest);
        open();
        fill();
        QTest::keyClick(field("export_email"), Qt::Key_Backspace);
        QVERIFY(!ok()->isEnabled());
        QCOMPARE(m_dialog->findChild<QLabel*>("export_status")->text(),
                 QString("The email address is not complete"));
        QTest::keyClick(field("export_email"), 'd');
        const QPointer<ExportYamlDialog> dialog = m_dialog;
        QSignalSpy accepted(m_dialog, &QDialog::accepted);
        TestSupport::press(m_dialog, Qt::Key_Return);
        QTRY_VERIFY(!dialog);
        QCOMPARE(accepted.size(), 1);
        const QString form =
            R"({"bottlesName":"office","programUuid":"u","name":"Paint","introduction":"Draws")"
            R"(,"downloadUrl":"http://a.example","packageSize":"84.5","contributor":"Ann")"
            R"(,"contributorEmail":"a@b.cd","category":"Games"})";
        QCOMPARE(m_service->waitForCall("dumpManifest").arguments, (QJsonArray{form}));
        QCOMPARE(m_service->waitForCall("ShowItems").arguments,
                 (QJsonArray{QJsonArray{"file://" + manifest}, ""}));

        // The next time the answers are here.
        open();
        QTRY_COMPARE(categories()->currentText(), QString("Games"));
        QCOMPARE(introduction()->toPlainText(), QString("Draws"));
        QVERIFY(ok()->isEnabled());

        // For another program they say only who exports.
        delete m_dialog;
        m_home.write("dump-manifest.json",
                     R"({"programUuid":"v","introduction":"Other","contributor":"Bo"})");
        open();
        QTRY_COMPARE(field("export_contributor")->text(), QString("Bo"));
        QCOMPARE(introduction()->toPlainText(), QString());
    }

    void moderation_data() {
        const Table<QString, QByteArray, int, QString> row("path", "answer", "longestMs", "outcome");
        const QByteArray risky = R"({"Data":{"RiskLevel":"high"}})";
        row("good", "check", R"({"Data":{"RiskLevel":"none"}})", 30000, "written");
        row("refused", "check", risky, 30000, "refused");
        row("breaks off", "half/check", risky, 30000, "written after err:");
        row("does not answer", "silent/check", "", 100, "written after err:");
        row("is closed before an answer", "silent/check", "", 30000, "checking");
    }
    void moderation() {
        QFETCH(QString, outcome);
        QFETCH(QString, path);
        QFETCH(int, longestMs);
        const LogCapture log;
        QFETCH(QByteArray, answer);
        m_server->files["check"] = answer;
        m_service->setHeld("dumpManifest", "/m.yml");
        open(path);
        m_dialog->findChild<ManifestExporter*>()->setLongestCheckMs(longestMs);
        fill();
        for (int i = 0; i < 2; ++i)  // the second does nothing
            TestSupport::press(m_dialog, Qt::Key_Return);
        QVERIFY(!ok()->isEnabled());
        if (outcome == "refused")
            QTRY_COMPARE(floating(), QString("The input contains sensitive information, please check it"));
        else if (outcome == "checking")
            QTRY_VERIFY(m_server->requests.last().startsWith(path));
        else
            QCOMPARE(m_service->waitForCall("dumpManifest").method, QString("dumpManifest"));
        QCOMPARE(log.contains("err:"), outcome.contains("err:"));
        QCOMPARE(ok()->isEnabled() && ok()->hasFocus(), outcome == "refused");
        TestSupport::press(m_dialog, Qt::Key_Escape);
        QTRY_VERIFY(!m_dialog);
        m_service->release();
        QCOMPARE(m_service->calls("dumpManifest").size(), int(outcome.startsWith("written")));
    }

    void answerOfAnEarlierCheck() {
        const LogCapture log;
        m_server->files["first"] = "the first ";
        m_server->files["second"] = "the second";
        m_service->setAnswers("dumpManifest", {{{"error", "no"}}});
        open("half/first");
        auto* exporter = m_dialog->findChild<ManifestExporter*>();
        exporter->setLongestCheckMs(0);
        fill();
        ok()->click();
        QTRY_VERIFY(ok()->isEnabled());
        exporter->setLongestCheckMs(30000);
        exporter->findChild<AliyunGreenApi*>()->setEndpoint(m_server->address("half/second"));
        ok()->click();
        QTRY_COMPARE(log.count("err:"), 2);
        QVERIFY(log.contains("Response: the s") && !log.contains("Response: the f"));
    }

    void dumpFails() {
        const LogCapture log;
        m_service->setAnswers("dumpManifest", {{{"error", "the disk is full"}}, {{"text", ""}}});
        open();
        fill();
        for (int i = 1; i <= 2; ++i) {
            ok()->click();
            m_service->waitForCall("dumpManifest", i);
            QTRY_VERIFY(ok()->isEnabled());
            QCOMPARE(floating(), QString("Failed to dump manifest"));
        }
        QCOMPARE(log.count("Failed to dump manifest: the disk is full"), 1);
        QCOMPARE(log.count("Failed to dump manifest"), 2);
    }

    void withoutAStore() {
        open({}, false);
        QTRY_COMPARE(floating(), QString("Failed to fetch categories, please check your network connection"));
        fill();
        QVERIFY(!ok()->isEnabled());
        m_server->files["categories"] = Categories;
        categories()->showPopup();  // asks again
        QTRY_COMPARE(categories()->count(), 3);
        categories()->hidePopup();
        categories()->setCurrentIndex(1);
        QVERIFY(ok()->isEnabled());
    }

    void fieldsTakeWhatFits() {
        open();
        const auto* counter = m_dialog->findChild<QLabel*>("export_introduction_counter");
        QTest::keyClicks(introduction(), QString(101, 'a'));
        QCOMPARE(introduction()->toPlainText(), QString(100, 'a'));
        QCOMPARE(counter->text(), QString("(100/100)"));
        introduction()->moveCursor(QTextCursor::Start);
        QTest::keyClick(introduction(), 'b');
        QCOMPARE(introduction()->toPlainText(), 'b' + QString(99, 'a'));
        QTest::keySequence(introduction(), QKeySequence::Undo);
        QCOMPARE(introduction()->toPlainText(), QString(100, 'a'));
        type("size", "8x4 MB.2.5");
        QCOMPARE(field("export_size")->text(), QString("84.25"));
        field("export_url")->insert("ftp://a");
        field("export_url")->insert(" https://a.example\t");
        QCOMPARE(field("export_url")->text(), QString("https://a.example"));

        fill();
        auto* edit = qobject_cast<Fenk::LineEdit*>(field("export_url")->parentWidget());
        QTest::keyClicks(field("export_url"), "?auth_key=");
        QVERIFY(edit->isAlert() && ok()->isEnabled());
        QTest::keyClick(field("export_url"), Qt::Key_Backspace);
        QVERIFY(!edit->isAlert() && ok()->isEnabled());
    }

    void keysAndNames() {
        open();
        fill();
        QVERIFY(field("export_name")->hasFocus());
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        QCOMPARE(introduction()->accessibleName(), QString("App introduction:"));
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    ExportYamlDialogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ExportYamlDialogTest.moc"
