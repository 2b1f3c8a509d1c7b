#include "feedback/dialogs/FeedBackDialog.h"

#include <QBuffer>
#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <memory>

#include "core/base/SettingsStore.h"
#include "feedback/client/BottleQuery.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/UploadedImage.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"
#include "widgets/LogView.h"

using State = ImageUploads::State;
using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

QByteArray png(int width = 8, int height = 8) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage image(width, height, QImage::Format_Mono);
    image.fill(0);
    image.save(&buffer, "PNG");
    return bytes;
}

/// Bytes after the end of a picture do no harm.
QByteArray padded(int size) {
    return png() + QByteArray(size - png().size(), '\0');
}

}  // namespace

/// The dialog between a report service, the bottle service and a user.
class FeedBackDialogTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<TestSupport::HttpServer> m_server;
    std::unique_ptr<QWidget> m_window;
    QPointer<FeedBackDialog> m_dialog;

    template <class Widget>
    Widget* find(const char* name) const {
        return m_dialog->findChild<Widget*>(name);
    }
    QPushButton* submit() const { return find<QPushButton>("feedback_submitbtn"); }
    QPushButton* save() const { return find<QPushButton>("feedback_savebtn"); }
    QString status() const { return find<QLabel>("feedback_status")->text(); }
    ImageUploads* uploads() const { return m_dialog->findChild<ImageUploads*>(); }
    bool isUnderWay() const { return uploads()->state() == FeedbackRules::Images::UnderWay; }
    static QString floating(const QWidget* window) {
        const auto* message =
            window->findChild<Fenk::FloatingMessage*>(QString(), Qt::FindDirectChildrenOnly);
        return message ? message->text() : QString();
    }
    static QStringList leftOvers() {
        const QDir place(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
        return place.entryList({"logs-*", "pictures-*", "*.gz"}, QDir::AllEntries);
    }
    void setService(const QString& path) const {
        settingsStore()->setOption("feedback.cfg.base_url",
                                   path == "none" ? QString() : m_server->address(path));
    }
    void setUpload(const QString& path) const {
        m_server->files["getUploadInfo"] =
            QString(R"({"status":200,"datas":[{"upload_url":"%1","file_key":"key"}]})")
                .arg(m_server->address(path))
                .toUtf8();
    }
    void open(const ProgramRef& program = {"office", {}}) {
        m_dialog = new FeedBackDialog(program, m_window.get());
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->setAppName("Paint");
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog));
    }
    void fill() const {
        QTRY_VERIFY(find<QCheckBox>("feedback_type_0"));
        find<QCheckBox>("feedback_type_0")->click();
        QTest::keyClicks(find<QPlainTextEdit>("feedback_description"), "White window");
    }
    /// Of the parts of what is sent.
    QString titles() const {
        const auto* parts = find<QListWidget>("sent_parts");
        QStringList texts;
        for (int i = 0; i < parts->count(); ++i)
            texts += parts->item(i)->text();
        return texts.join('|');
    }
    void add(const QStringList& files) const { uploads()->add(files); }
    QJsonObject sentReport() const {
        for (int i = 0; i < m_server->heads.size(); ++i) {
            if (m_server->heads[i].startsWith("POST /store-common-report/wineAssist/feedback "))
                return QJsonDocument::fromJson(m_server->bodies[i]).object();
        }
        return {};
    }

private Q_SLOTS:
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        settingsStore()->setOption("feedback.cfg.secret", "s3cret");
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
        m_server = std::make_unique<TestSupport::HttpServer>();
        m_server->files = {
            {"put", ""},
            {"feedback", R"({"status":200})"},
            {"issueTypeDef", R"({"status":200,"datas":[{"id":"7","name":"n","enName":"Crash & burn"},
                                 {"id":"7","enName":"again"},{"id":"8","enName":"<b>Slow</b>"}]})"}};
        setUpload("put");
        setService("");
        m_home.write("bottle/logs/wine-setup.exe.txt", "err:module:import_dll\n");
        m_home.write("bottle/bottle.yml", "Runner: wine\n");
        m_service->setBottle(
            "office", {{"Path", m_home.path() + "/bottle"}, {"Runner", "wine-8"}, {"Windows", "win10"}});
        m_window = std::make_unique<QWidget>();
        m_window->resize(950, 700);
        m_window->show();
    }
    void cleanup() {
        delete m_dialog;
        QTRY_COMPARE(UploadFilesManager::instance()->pathsUnderWay(), QStringList());
        QTRY_COMPARE(leftOvers(), QStringList());
    }

    void contacts_data() {
        const Table<bool> row("isContact");
        for (const char* good :
             {"", "ann@b.cd", "o'ann+1@b-c.co.uk", "+86 138-0013-8000", "(021) 5555 1234", "123"})
            row(good, true);
        for (const char* bad : {"ann", "ann@b", "@b.cd", "12", "+86", "ann@b.cd "})
            row(bad, false);
    }
    void contacts() { QTEST(FeedbackRules::isContact(QTest::currentDataTag()), "isContact"); }

    void reports_data() {
        const Table<QString, QString, QString> row("bottle", "logs", "message");
        const char* isPart = "The report was sent, but the logs could not be collected or uploaded";
        row("a program", "office", "key", "Successfully");
        row("the logs are lost", "office", "", isPart);
        row("a bottle that is gone", "gone", "", isPart);
        row("the service dies", "dying", "", isPart);
        row("the application itself", "", "", "Successfully");
    }
    void reports() {
        QFETCH(QString, bottle);
        m_service->setVanish("Bottles.get:dying");
        open({bottle, {}});
        QCOMPARE(submit()->isEnabled(), false);
        fill();
        add({m_home.write("shot.PNG", png())});
        QVERIFY(!submit()->isEnabled());  // the picture is under way
        QTRY_VERIFY(submit()->isEnabled());
        find<QLineEdit>("feedback_contact")->setText("ann at b.cd");
        submit()->click();
        auto* contact = qobject_cast<Fenk::LineEdit*>(find<QLineEdit>("feedback_contact")->parentWidget());
        QCOMPARE(contact->alertMessage(), QString("Please enter contact with valid format"));
        QVERIFY(sentReport().isEmpty());
        find<QLineEdit>("feedback_contact")->setText("ann@b.cd");
        if (QTest::currentDataTag() == QString("the logs are lost"))
            setUpload("gone");
        submit()->click();
        QVERIFY(!submit()->isEnabled());
        QTRY_VERIFY(!m_dialog);
        QTEST(floating(m_window.get()), "message");
        QJsonObject report = sentReport();
        QVERIFY(report.take("hardwareInfo").toObject().contains("cpu"));
        for (const char* key : {"time", "nounce", "sign"})
            QVERIFY(!report.take(key).toString().isEmpty());
        QTEST(report.take("logFileKey").toString(), "logs");
        QCOMPARE(QJsonDocument(report).toJson(QJsonDocument::Compact),
                 QByteArray(R"({"appName":"Paint","appVersion":"","contactInfo":"ann@b.cd","downUrl":"",)"
                            R"("imgKeys":["key"],"issueDesc":"White window","issueTypes":["7"]})"));
        for (const auto& head : qAsConst(m_server->heads))
            QVERIFY(!head.startsWith("PUT ") || head.contains("Accept-Language: *\r\n"));
        QVERIFY(m_server->heads.last().contains(bottle == "office" ? "X-Wine-Ver: wine-8\r\n"
                                                                   : "X-Wine-Ver: \r\n"));
    }

    void pictures_data() {
        const Table<QByteArray, int, QString> row("content", "kept", "message");
        row("largest", padded(2097152), 1, "");
        row("too large", padded(2097153), 0,
            "The image size exceeds 2M not being uploaded, please reselect the image");
        row("many pixels", png(20000, 5000), 1, "");
        row("broken", png(600, 600).left(60), 0,
            "“a.png” is not a picture of these kinds: jpg, jpeg, png, gif");
        row("no picture", "MZ", 0, "“a.png” is not a picture of these kinds: jpg, jpeg, png, gif");
        row("vanished", QByteArray(), 0, "“a.png” cannot be read");
    }
    void pictures() {
        QFETCH(QByteArray, content);
        const QString path = m_home.write("a.png", content);
        if (content.isEmpty())
            QFile::remove(path);
        open();
        find<QPushButton>("feedback_addimagebtn")->click();
        auto* choice = m_dialog->findChild<QFileDialog*>();
        QCOMPARE(choice->windowTitle(), QString("Select Image"));
        QCOMPARE(choice->nameFilters(), QStringList("Image Files (*.png *.jpg *.jpeg *.gif)"));
        Q_EMIT choice->filesSelected({path});
        delete choice;
        QTRY_VERIFY(!isUnderWay());
        m_home.write("a.png", "another");  // what is sent is what was shown
        QTEST(floating(m_dialog), "message");
        QTEST(uploads()->images().size(), "kept");
        QVERIFY(uploads()->images().isEmpty() || m_server->bodies.contains(content));
    }

    void jpegs_data() {
        const Table<int> row("orientation");
        for (int orientation = 1; orientation <= 8; ++orientation)
            row(qPrintable(QString::number(orientation)), orientation);
    }
    /// A copy says nothing but the picture.
    void jpegs() {
        QFETCH(int, orientation);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QImageWriter writer(&buffer, "JPEG");
        writer.setProgressiveScanWrite(orientation % 2);
        writer.write(QImage::fromData(png(30, 20)));
        QByteArray blocks(
            "\xFF\xE1\0\x28"
            "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\0\0\0\0\0\0\0\0secret"
            "\xFF\xED\0\x08secret\xFF\xFE\0\x08secret",
            62);
        blocks[28] = char(orientation);
        bytes.insert(2, blocks);
        const QString path = m_home.write("a.jpg", bytes + "secret");
        const auto picture = ReportPicture::take(path, m_home.path() + "/copy");
        const QByteArray copy = TestSupport::readFile(picture.copy);
        QVERIFY(!copy.isEmpty() && !copy.contains("secret"));
        QCOMPARE(picture.bytes, qint64(copy.size()));
        const auto transformation = QImageReader(path).transformation();
        QCOMPARE(transformation == 0, orientation == 1);
        QCOMPARE(QImageReader(picture.copy).transformation(), transformation);
        QCOMPARE(QImage(picture.copy), QImage(path));
    }

    void tenPictures() {
        open();
        const LogCapture log;
        QStringList files;
        for (int i = 0; i < 10; ++i)
            files += m_home.write(QString("%1.png").arg(i), png(8 + i));
        files.insert(3, m_home.write("large.png", padded(2097153)));
        files.insert(4, m_home.write("text.png", "MZ"));
        add(files.mid(0, 2));
        add(files.mid(2));
        QTRY_COMPARE(uploads()->keys().size(), 9);
        QCOMPARE(log.count("already have 9 images"), 1);
        QVERIFY(floating(m_dialog).contains("exceeds 2M") &&
                floating(m_dialog).contains("\n“text.png” is not"));
        QVERIFY(find<QPushButton>("feedback_addimagebtn")->isHidden());
        find<UploadedImage>("uploaded_image_8")->setFocus();
        for (int key : {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Space})
            QTest::keyClick(m_dialog->focusWidget(), Qt::Key(key));
        QTest::mouseClick(find<UploadedImage>("uploaded_image_0"), Qt::LeftButton);
        QCOMPARE(uploads()->images().size(), 5);
        QVERIFY(find<UploadedImage>("uploaded_image_1")->hasFocus());
        QVERIFY(find<QPushButton>("feedback_addimagebtn")->isVisible());
    }

    void uploadsFailAndAreRemoved() {
        open();
        fill();
        {
            TestSupport::EnvironmentGuard environment;
            environment.set("XDG_CONFIG_HOME", m_home.write("file", {}).toUtf8());
            add({m_home.write("a.png", png())});
            QTRY_VERIFY(floating(m_dialog).startsWith("There is no room for a copy of “a.png” in "));
        }
        setUpload("gone");
        add({m_home.write("a.png", png())});
        QTRY_COMPARE(floating(m_dialog), QString("Image upload failed, please try again"));
        QCOMPARE(find<UploadedImage>("uploaded_image_0")->accessibleDescription(), QString("Upload failed"));
        QCOMPARE(status(), QString("A picture could not be uploaded. Retry, or remove it"));
        QVERIFY(!submit()->isEnabled());
        setUpload("put");
        find<UploadedImage>("uploaded_image_0")->setFocus();
        QTest::keyClick(m_dialog, Qt::Key_Tab);
        QVERIFY(find<QPushButton>("feedback_retryimagebtn")->hasFocus());
        find<QPushButton>("feedback_retryimagebtn")->click();
        QVERIFY(find<UploadedImage>("uploaded_image_0")->hasFocus());
        QTRY_VERIFY(submit()->isEnabled());
        QCOMPARE(uploads()->keys(), QStringList("key"));
        setUpload("silent/put");
        add({m_home.write("b.png", png())});
        QTRY_VERIFY(!m_server->requests.filter("silent/put").isEmpty());
        QVERIFY(!submit()->isEnabled());
        find<UploadedImage>("uploaded_image_1")->click();
        QTRY_COMPARE(UploadFilesManager::instance()->pathsUnderWay(), QStringList());
        find<UploadedImage>("uploaded_image_0")->click();
        QVERIFY(submit()->isEnabled() && uploads()->images().isEmpty());
    }

    void endsFromEachState_data() {
        const Table<QString, bool> row("status", "isDeleted");
        for (bool isDeleted : {false, true}) {
            const auto name = [isDeleted](const char* state) {
                return QString("%1, %2").arg(state, isDeleted ? "deleted" : "cancelled");
            };
            row(qPrintable(name("collecting")), "Collecting what is sent…", isDeleted);
            row(qPrintable(name("logs")), "Uploading the logs…", isDeleted);
            row(qPrintable(name("sending")), "Sending the report…", isDeleted);
        }
        row("picture, deleted", "The pictures are being uploaded…", true);
        row("types, deleted", "Please describe the problem", true);
    }
    void endsFromEachState() {
        QFETCH(QString, status);
        QFETCH(bool, isDeleted);
        const QString name = QTest::currentDataTag();
        if (name.startsWith("types"))
            setService("silent");
        open({name.startsWith("sending") ? QString() : "office", {}});
        if (!name.startsWith("types"))
            fill();
        if (name.startsWith("collecting"))
            m_service->setHeld("Bottles.get:office", "{}");
        if (name.startsWith("logs") || name.startsWith("picture"))
            setUpload("silent/put");
        if (name.startsWith("picture"))
            add({m_home.write("a.png", png())});
        if (name.startsWith("sending"))
            setService("silent");
        submit()->click();
        QTRY_VERIFY2(this->status().startsWith(status), qPrintable(this->status()));
        if (name.startsWith("logs") || name.startsWith("picture"))
            QTRY_VERIFY(!m_server->requests.filter("silent/put").isEmpty());
        if (isDeleted)
            return;  // by cleanup()
        TestSupport::press(m_dialog, Qt::Key_Escape);
        QVERIFY(m_dialog->isVisible() && submit()->isEnabled());
        QTRY_COMPARE(UploadFilesManager::instance()->pathsUnderWay(), QStringList());
        TestSupport::press(m_dialog, Qt::Key_Escape);
        QTRY_VERIFY(!m_dialog);
        QCOMPARE(m_service->release(), int(name.startsWith("collecting") ? 2 : 0));
    }

    void bottleServiceHangs() {
        m_service->setHeld("Bottles.get:office", "{}");
        QVector<BusResult> results;
        BottleQuery::ask(
            "office", this, [&results](const BusResult& result) { results += result; }, 1);
        QTRY_COMPARE(results.size(), 1);
        QVERIFY(results[0].timedOut);
        m_service->waitForCall("get");
        QCOMPARE(m_service->release(), 1);
        BottleQuery::ask("other", this, [&results](const BusResult& result) { results += result; });
        QTRY_COMPARE(results.size(), 2);  // the late answer would have been before
        QVERIFY(!results[1].timedOut);
    }

    void windowGoesMeanwhile() {
        auto* dialog = new FeedBackDialog(m_window.get());
        m_dialog = dialog;
        QTimer::singleShot(0, this, [this] { m_window.reset(); });
        QCOMPARE(dialog->exec(), -1);
        QVERIFY(!m_dialog);
    }

    void failsAndIsSaved_data() {
        const Table<QString, QString> row("service", "status");
        row("refused", "", "Too <b>many</b>");
        row("no types", "gone", "You can save the report to a file instead");
        row("no service", "none", "");
    }
    void failsAndIsSaved() {
        QFETCH(QString, service);
        m_server->files["feedback"] = R"({"status":429,"desc":"Too <b>many</b>"})";
        if (service == "gone")
            m_server->files.remove("issueTypeDef");
        setService(service == "none" ? service : QString());
        open();
        if (service.isEmpty()) {
            fill();
            submit()->click();
            QTRY_COMPARE(floating(m_dialog), QString("Failed to submit, please check your network"));
            QVERIFY(submit()->isEnabled() && submit()->hasFocus());
        } else {
            QTest::keyClicks(find<QPlainTextEdit>("feedback_description"), "White window");
        }
        QTRY_VERIFY(save()->isVisible());
        QTEST(status(), "status");
        find<QPushButton>("feedback_turnbtn")->click();
        QTRY_VERIFY(titles().contains("report.json"));
        find<QPushButton>("feedback_turnbtn")->click();
        QCOMPARE(service == "none", !submit());
        add({m_home.write("a.png", png())});
        QTRY_VERIFY(!uploads()->images().isEmpty() && !isUnderWay());
        const auto saveAs = [this](const QString& path) {
            save()->click();
            auto* choice = m_dialog->findChild<QFileDialog*>();
            Q_EMIT choice->fileSelected(path);
            delete choice;
        };
        saveAs(m_home.path() + "/none/report.tar.gz");
        QTRY_VERIFY(floating(m_dialog).startsWith("The report could not be written to"));
        const QString path = m_home.path() + "/report.tar.gz";
        {
            TestSupport::EnvironmentGuard environment;
            QFile(m_home.write("bin/tar", "#!/bin/sh\nexec sleep 300\n"))
                .setPermissions(QFile::ReadOwner | QFile::ExeOwner);
            environment.set("PATH", m_home.path().toUtf8() + "/bin:" + qgetenv("PATH"));
            saveAs(path);
            QTRY_COMPARE(leftOvers().filter("logs-").size(), 2);  // the logs, and what is packed
            TestSupport::press(m_dialog, Qt::Key_Escape);         // ends the save, not the dialog
            QVERIFY(save()->isEnabled());
            QTRY_COMPARE(leftOvers().filter("logs-").size(), 1);
        }
        saveAs(path);
        QTRY_VERIFY(!m_dialog);
        QCOMPARE(floating(m_window.get()), "The report is in " + path);
        QProcess tar;
        tar.start("tar", {"-xvzf", path, "-C", m_home.path()});
        QVERIFY(tar.waitForFinished());
        const QString listed = QString::fromUtf8(tar.readAllStandardOutput());
        for (const char* file :
             {"report.json", "pictures/0.png", "logs/bottle.yml", "logs/wine-setup.exe.txt"})
            QVERIFY2(listed.contains(QString("cellarix-report/") + file), qPrintable(listed));
        const auto json =
            QJsonDocument::fromJson(TestSupport::readFile(m_home.path() + "/cellarix-report/report.json"));
        QCOMPARE(json["report"]["imgKeys"].toArray(), QJsonArray{"pictures/0.png"});
        QCOMPARE(json["report"]["issueDesc"].toString(), QString("White window"));
        QVERIFY(json["headers"]["X-Wine-Ver"] == "wine-8" &&
                !json["headers"].toObject().contains("X-Device-Id"));
    }

    void typesAreAskedForAgain() {
        const QByteArray types = m_server->files.take("issueTypeDef");
        open();
        auto* retry = find<QPushButton>("feedback_types_retry");
        QTRY_VERIFY(retry->isVisible());
        m_server->files["issueTypeDef"] = types;
        retry->click();
        fill();
        QVERIFY(submit()->isEnabled() && !save()->isVisible() && !retry->isVisible());
        QCOMPARE(find<QCheckBox>("feedback_type_1")->text(), QString("<b>Slow</b>"));
    }

    void tellsWhatIsSent() {
        open();
        fill();
        const QByteArray longLine(40000, 'x');
        m_home.write("bottle/logs/wine-setup.exe.txt", longLine + " end\n");
        find<QPushButton>("feedback_turnbtn")->click();
        QVERIFY(!find<QLabel>("feedback_sentalready")->text().contains("pictures"));
        add({m_home.write("a.png", png(600, 8))});
        QTRY_VERIFY(submit()->isEnabled());
        QVERIFY(find<QLabel>("feedback_sentalready")->text().contains("pictures"));
        auto* parts = find<QListWidget>("sent_parts");
        QTRY_COMPARE(titles(), QString("Report|About this computer|Picture 1|bottle.yml|wine-setup.exe.txt"));
        const auto* text = find<QPlainTextEdit>("sent_text");
        QVERIFY(text->toPlainText().contains(R"("issueDesc": "White window")"));
        parts->setCurrentRow(1);
        QVERIFY(text->toPlainText().contains("X-Device-Id: ") &&
                text->toPlainText().contains("X-Wine-Ver: wine-8"));
        parts->setCurrentRow(2);
        const auto* picture = find<QLabel>("sent_picture");
        QTRY_VERIFY(picture->pixmap(Qt::ReturnByValue).size() == QSize(600, 8));
        QVERIFY(find<QLabel>("sent_note")->isHidden());
        const QByteArray frame("\x2C\0\0\0\0\1\0\1\0\0\2\2\x44\1\0", 15);
        add({m_home.write("b.gif",
                          QByteArray("GIF89a\1\0\1\0\x80\0\0\0\0\0\xFF\xFF\xFF", 19) + frame + frame + ';')});
        QTRY_VERIFY(titles().contains("|Picture 2|"));
        parts->setCurrentRow(3);
        QTRY_COMPARE(find<QLabel>("sent_note")->text(),
                     QString("This picture moves. Its first frame is shown here."));
        uploads()->remove("uploaded_image_1");
        parts->setCurrentRow(4);
        const LogStore& lines = find<LogView>("sent_file")->store();
        QTRY_COMPARE(lines.lineCount(), 10);
        QCOMPARE(lines.lastLines(10).join("").toUtf8(), longLine + " end");
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        m_home.write("bottle/logs/wine-later.exe.txt", "came after it was read");
        find<QCheckBox>("feedback_sendlogs")->click();
        QCOMPARE(titles(), QString("Report|About this computer|Picture 1"));
        TestSupport::press(m_dialog, Qt::Key_Escape);  // back to the form
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        submit()->click();
        QTRY_VERIFY(!m_dialog);
        QCOMPARE(sentReport()["logFileKey"].toString(), QString());
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    FeedBackDialogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "FeedBackDialogTest.moc"
