#include "feedback/rating/ApplyScoreDialog.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QJsonDocument>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QStandardPaths>
#include <memory>

#include "core/base/SettingsStore.h"
#include "feedback/rating/ScoreSubmission.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

/// The dialog between a bottle service and a report service.
class ApplyScoreDialogTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<TestSupport::HttpServer> m_server;
    QWidget m_window;
    QPointer<ApplyScoreDialog> m_dialog;
    QList<int> m_submitted;

    template <class Part = QAbstractButton>
    Part* part(const char* name) const {
        return m_dialog->findChild<Part*>(QString("applyscore_dialog_") + name);
    }
    QString message(QWidget* over) const {
        const auto* shown = over->findChild<Fenk::FloatingMessage*>();
        return shown ? shown->text() : QString();
    }
    QJsonObject sentScore() const {
        return QJsonDocument::fromJson(m_server->bodies.value(m_server->bodies.size() - 1)).object();
    }
    QString suggestions() const { return m_home.path() + "/suggestions"; }

    void open(const QString& path = "", int score = 0) {
        const QString base = path.isNull() ? QString() : m_server->address(path).chopped(1);
        settingsStore()->setOption("feedback.cfg.base_url", base);
        Program program;
        program.ref = {"office", "u"};
        program.name = QString::fromUtf8("../<b>海</b>") + QString(230, 'x');
        m_dialog = ApplyScoreDialog::openFor(program, score, &m_window);
        m_dialog->findChild<ScoreSubmission*>()->setSuggestionDirectory(suggestions());
        connect(m_dialog, &ApplyScoreDialog::submit, this, [this](int stars) { m_submitted += stars; });
        QVERIFY(QTest::qWaitForWindowActive(m_dialog));
    }
    void agree(const QString& suggestion) {
        part<QPlainTextEdit>("suggestion_edit")->setPlainText(suggestion);
        part("agree_upload_btn")->click();
    }

private Q_SLOTS:
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        settingsStore()->setOption("feedback.cfg.secret", "s3cret");
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
        m_home.write("bottle.yml", "Path: " + m_home.path().toUtf8() + '\n');
        m_service->setBottle("office", {{"Path", m_home.path()}, {"Runner", "wine"}, {"Windows", "win10"}});
        m_server = std::make_unique<TestSupport::HttpServer>();
        m_server->files = {{"appScore", R"({"status":200})"}, {"put", ""}};
        m_server->files["getUploadInfo"] =
            QString(R"({"status":200,"datas":[{"upload_url":"%1","file_key":"key"}]})")
                .arg(m_server->address("put"))
                .toUtf8();
        m_submitted.clear();
        m_window.show();
    }
    void cleanup() {
        delete m_dialog;
        delete m_window.findChild<Fenk::FloatingMessage*>();
        QTRY_VERIFY(!QFile::exists(suggestions()));
    }

    void stars() {
        open();
        QTRY_COMPARE(QApplication::focusWidget(), part("star_1"));
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        QVERIFY(!part("submit_btn")->isEnabled());
        const auto* title = m_dialog->findChild<QLabel*>("dialog_title");
        QVERIFY(title->height() < 4 * title->fontMetrics().height());
        TestSupport::press(m_dialog, Qt::Key_4);
        QVERIFY(part("submit_btn")->isEnabled() && part("star_4")->hasFocus());
        QTest::keyClick(part("star_4"), Qt::Key_Right);
        QVERIFY(part<QLabel>("score_text")->text().startsWith("App runs with excellent"));
        QTest::mouseClick(part("star_2"), Qt::LeftButton, {}, {1, 1});
        QVERIFY(part<QLabel>("score_text")->text().contains("poor user experience"));
        const auto* accessible = QAccessible::queryAccessibleInterface(part("star_2"));
        QVERIFY(accessible->role() == QAccessible::RadioButton && accessible->state().checked);
        auto* edit = part<QPlainTextEdit>("suggestion_edit");
        edit->setPlainText(QString(498, 'a'));
        QTest::keyClicks(edit, "bcd");
        QCOMPARE(part<QLabel>("counter")->text(), QString("(500/500)"));
    }

    void sends_data() {
        const Table<bool, QString, QString, QString, QString> row("agrees", "suggestion", "broken", "key",
                                                                  "message");
        row("score alone", false, "", "", "", "Successfully");
        row("with the configuration", true, "better", "", "key", "Successfully");
        row("what was shown", true, "better", "", "key", "Successfully");
        row("upload fails", true, "better", "put", "", "configuration and the suggestion could not");
        row("nothing was typed", true, "", "put", "", "but the configuration could not");
        row("no place", true, "better", "/none/a", "key", "but the suggestion could not");
    }
    void sends() {
        QFETCH(bool, agrees);
        QFETCH(QString, suggestion);
        QFETCH(QString, broken);
        QFETCH(QString, message);
        m_server->files.remove(broken);
        open("", 3);
        const QDir place(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
        const QString inTheWay = m_home.write("other.log", "of another program");
        if (broken.startsWith('/')) {
            m_dialog->findChild<ScoreSubmission*>()->setSuggestionDirectory(broken);
            QVERIFY(place.mkpath(".") && QFile::copy(inTheWay, place.filePath("suggestions")));
        }
        if (agrees)
            agree(suggestion);
        if (QByteArray(QTest::currentDataTag()) == "what was shown") {
            part("turn_btn")->click();
            QTRY_COMPARE(m_dialog->findChild<QListWidget*>("sent_parts")->count(), 4);
            m_home.write("bottle.yml", "later");
            QVERIFY(QDir().mkpath(suggestions()) && QFile::copy(inTheWay, suggestions() + "/other.log"));
        }
        TestSupport::press(m_dialog, Qt::Key_Return);
        QTRY_VERIFY(!m_dialog);
        QCOMPARE(m_submitted, QList<int>{3});
        QVERIFY2(this->message(&m_window).contains(message), qPrintable(this->message(&m_window)));
        QCOMPARE(sentScore()["appName"].toString().size(), 50);
        QCOMPARE(sentScore()["score"].toInt(), 3);
        QTEST(sentScore()["cfgFileKey"].toString(), "key");
        QVERIFY(m_server->heads.last().contains("X-Wine-Ver: wine\r\n"));
        QFile::remove(place.filePath("suggestions"));
        QDir(suggestions()).removeRecursively();
        if (!agrees)
            return;
        QProcess tar;
        tar.start("tar", {"-xOzf", m_home.write("sent.tar.gz", m_server->bodies.value(1))});
        QVERIFY(tar.waitForFinished());
        const QByteArray sent = tar.readAllStandardOutput();
        QVERIFY2(sent.contains("Path: @home_dir@") && !sent.contains("another"), sent.constData());
        QCOMPARE(sent.contains("better"), !suggestion.isEmpty() && !broken.startsWith('/'));
    }

    void namesOfTheStore_data() {
        const Table<QString, QString> row("other", "appName");
        row("the only entry", "Help", "Paint Studio");
        row("not this entry", "Paint Studio", QString::fromUtf8("../<b>海</b>x"));
    }
    void namesOfTheStore() {
        QFETCH(QString, other);
        const QJsonObject programs{{"v", QJsonObject{{"name", other}}}};
        m_service->setBottle("office", {{"Application", "Paint Studio"}, {"External_Programs", programs}});
        open("", 3);
        TestSupport::press(m_dialog, Qt::Key_Return);
        QTRY_VERIFY(!m_dialog);
        QTEST(sentScore()["appName"].toString().left(12), "appName");
    }

    void fails() {
        m_server->files["appScore"] = R"({"status":500,"desc":"<b>full"})";
        open("", 2);
        agree("better");
        part("submit_btn")->click();
        QTRY_COMPARE(message(m_dialog), QString("Failed to submit, please check your network"));
        QCOMPARE(part<QLabel>("status")->text(), QString("<b>full"));
        QCOMPARE(part<QPlainTextEdit>("suggestion_edit")->toPlainText(), QString("better"));
        QVERIFY(m_submitted.isEmpty() && part("submit_btn")->hasFocus());
    }

    void cancels_data() {
        const Table<QString, QString> row("request", "held");
        row("the bottle's record", "", "get");
        row("the address", "getUploadInfo", "");
        row("the file", "put", "");
        row("the score", "appScore", "");
    }
    void cancels() {
        QFETCH(QString, request);
        QFETCH(QString, held);
        m_server->files["getUploadInfo"].replace("/put", "/silent/put");
        if (!held.isEmpty())
            m_service->setHeld("Bottles.get:office", "{}");
        open(request == "put" ? "" : "silent/", 1);
        if (request != "appScore")
            agree("better");
        part("submit_btn")->click();
        QVERIFY(!part("submit_btn")->isEnabled());
        if (!request.isEmpty())
            QTRY_VERIFY(!m_server->requests.filter(request).isEmpty());
        TestSupport::press(m_dialog, Qt::Key_Escape);
        QTRY_VERIFY(m_dialog && part("submit_btn")->isEnabled());
        QTRY_VERIFY(!QFile::exists(suggestions()));
        part("submit_btn")->click();
        m_service->kill();
        delete m_dialog;
    }

    void whatIsSent() {
        open("", 5);
        agree("better");
        part("turn_btn")->click();
        auto* parts = m_dialog->findChild<QListWidget*>("sent_parts");
        QTRY_COMPARE(parts->count(), 4);
        QCOMPARE(parts->item(3)->text(), QString("bottle.yml"));
        parts->setCurrentRow(1);
        const auto* text = m_dialog->findChild<QPlainTextEdit*>("sent_text");
        QTRY_VERIFY(text->toPlainText().contains("X-Windows-Ver: win10"));
        TestSupport::press(m_dialog, Qt::Key_Escape);
        part("agree_upload_btn")->click();
        part("turn_btn")->click();
        QCOMPARE(parts->count(), 2);
        QVERIFY(m_server->requests.isEmpty());
    }

    void withoutService() {
        open(QString(), 4);
        QVERIFY(part<QLabel>("no_service") && !part("agree_upload_btn"));
        part("submit_btn")->click();
        QCOMPARE(m_submitted, QList<int>{4});
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    ApplyScoreDialogTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ApplyScoreDialogTest.moc"
