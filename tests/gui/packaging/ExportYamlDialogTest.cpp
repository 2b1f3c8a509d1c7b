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
    void fill() {
        introduction()->setPlainText("Draws");
        categories()->setCurrentText("Games");
        const QString texts[][2] = {{"export_url", "http://a.example"},
                                    {"export_size", "84.5"},
                                    {"export_contributor", "Ann"},
                                    {"export_email", "a@b.cd"}};
        for (const auto& [name, text] : texts) {
            field(name)->clear();
            QTest::keyClicks(field(name), text);
        }
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
        QVERIFY(!ok()->isEnabled());
        fill();
        QVERIFY(ok()->isEnabled());
        QTest::keyClick(field("export_email"), Qt::Key_Backspace);
        QVERIFY(!ok()->isEnabled());
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
        QCOMPARE(m_service->waitForCall("ShowItems").arguments, (QJsonArray{QJsonArray{manifest}, ""}));

        // The next time the answers are here.
        open();
        QTRY_COMPARE(categories()->currentText(), QString("Games"));
        QCOMPARE(introduction()->toPlainText(), QString("Draws"));
        QVERIFY(ok()->isEnabled());
    }

    void moderation_data() {
        const Table<QString, QByteArray, bool> row("path", "answer", "isExported");
        row("none", "check", R"({"Data":{"RiskLevel":"none"}})", true);
        row("no word of risk", "check", "{}", true);
        row("high", "check", R"({"Data":{"RiskLevel":"high"}})", false);
        row("cannot be reached", "gone", "", true);
        row("breaks off", "half/check", R"({"Data":{"RiskLevel":"high"}})", true);
        row("does not answer", "silent/check", "", true);
    }
    void moderation() {
        QFETCH(QString, path);
        QFETCH(QByteArray, answer);
        QFETCH(bool, isExported);
        const LogCapture log;
        m_server->files["check"] = answer;
        m_service->setHeld("dumpManifest", "/m.yml");
        open(path);
        m_dialog->findChild<ManifestExporter*>()->setLongestCheckMs(path.contains("silent") ? 100 : 30000);
        fill();
        ok()->click();
        QVERIFY(!ok()->isEnabled());
        if (isExported) {
            QCOMPARE(m_service->waitForCall("dumpManifest").method, QString("dumpManifest"));
            QVERIFY(floating().isEmpty() && !ok()->isEnabled());
            QCOMPARE(log.contains("err:"), path != "check");
        } else {
            QTRY_COMPARE(floating(), QString("The input contains sensitive information, please check it"));
            QVERIFY(ok()->isEnabled() && ok()->hasFocus());
            QVERIFY(m_service->calls("dumpManifest").isEmpty());
        }
    }

    void dumpFails() {
        const LogCapture log;
        m_service->setAnswers("dumpManifest", {{{"error", "the disk is full"}}, {{"text", ""}}});
        open();
        fill();
        for (int i = 1; i <= 2; ++i) {
            ok()->click();
            QVERIFY(floating().isEmpty() || i > 1);
            m_service->waitForCall("dumpManifest", i);
            QTRY_VERIFY(ok()->isEnabled());
            QCOMPARE(floating(), QString("Failed to dump manifest"));
        }
        QCOMPARE(log.count("Failed to dump manifest: the disk is full"), 1);
        QCOMPARE(log.count("Failed to dump manifest"), 2);
    }

    void closedMeanwhile() {
        for (const bool isChecking : {true, false}) {
            m_service->setHeld("dumpManifest", "/m.yml");
            open(isChecking ? "silent/check" : "");
            fill();
            ok()->click();
            if (isChecking)
                QTRY_VERIFY(m_server->requests.last().startsWith("silent/check"));
            else
                QCOMPARE(m_service->waitForCall("dumpManifest").method, QString("dumpManifest"));
            TestSupport::press(m_dialog, Qt::Key_Escape);
            QTRY_VERIFY(!m_dialog);
            m_service->release();
            m_service->calls();  // comes after the released answer
        }
    }

    void withoutAStore() {
        open({}, false);
        QTRY_COMPARE(floating(), QString("Failed to fetch categories, please check your network connection"));
        QCOMPARE(categories()->currentText(), QString("Select category"));
        fill();
        QVERIFY(!ok()->isEnabled());
        m_server->files["categories"] = Categories;
        categories()->showPopup();  // asks again
        QTRY_COMPARE(categories()->count(), 3);
        categories()->hidePopup();
        categories()->setCurrentIndex(1);
        QVERIFY(ok()->isEnabled());
    }

    void temporaryAddressWarns() {
        open();
        fill();
        auto* edit = qobject_cast<Fenk::LineEdit*>(field("export_url")->parentWidget());
        QTest::keyClicks(field("export_url"), "?auth_key=");
        QCOMPARE(edit->alertMessage(), QString("This appears to be a temporary URL that may expire"));
        QVERIFY(edit->isAlert() && ok()->isEnabled());
        QTest::keyClick(field("export_url"), Qt::Key_Backspace);
        QVERIFY(!edit->isAlert() && ok()->isEnabled());
    }

    void fieldsTakeWhatFits() {
        open();
        QVERIFY(introduction()->toPlainText().isEmpty());
        const auto* counter = m_dialog->findChild<QLabel*>("export_introduction_counter");
        QCOMPARE(counter->text(), QString("(0/100)"));
        QTest::keyClicks(introduction(), QString(101, 'a'));
        QCOMPARE(introduction()->toPlainText(), QString(100, 'a'));
        QCOMPARE(counter->text(), QString("(100/100)"));
        QTest::keyClicks(field("export_size"), "8x4 MB.2.5");
        QCOMPARE(field("export_size")->text(), QString("84.25"));
        field("export_url")->insert("ftp://a");
        field("export_url")->insert(" https://a.example\t");
        QCOMPARE(field("export_url")->text(), QString("https://a.example"));
    }

    void keysAndNames() {
        open();
        fill();
        QVERIFY(field("export_name")->hasFocus());
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        for (const QWidget* control :
             {static_cast<QWidget*>(field("export_email")), static_cast<QWidget*>(introduction()),
              static_cast<QWidget*>(categories()), static_cast<QWidget*>(ok())})
            QVERIFY(!control->accessibleName().isEmpty());
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    ExportYamlDialogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ExportYamlDialogTest.moc"
