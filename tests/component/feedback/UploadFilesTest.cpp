#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QThread>

#include "core/base/SettingsStore.h"
#include "feedback/client/LogCollection.h"
#include "feedback/client/LogUpload.h"
#include "feedback/client/SuggestionFile.h"
#include "feedback/client/UploadFilesManager.h"
#include "feedback/client/UploadPlace.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using Status = UploadFilesTaskStatus;
using TestSupport::LogCapture;
using TestSupport::Table;

class UploadFilesTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    TestSupport::PrivateBus m_bus;
    TestSupport::HttpServer m_server;
    QString m_picture = m_home.write("a.png", "picture");

    QByteArray info(const QString& url) const {
        return QString(R"({"status":200,"datas":[{"upload_url":"%1","file_key":"key"}]})").arg(url).toUtf8();
    }
    static QStringList leftOvers() {
        const QDir place(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
        return place.entryList({"logs-*", "*.gz"}, QDir::AllEntries);
    }
    QString sparse(const QString& name, qint64 bytes, int ageDays = 0) const {
        const QString path = m_home.write(name, "begin");
        QFile file(path);
        file.open(QIODevice::ReadWrite);
        file.resize(bytes);
        file.setFileTime(QDateTime::currentDateTime().addDays(-ageDays), QFileDevice::FileModificationTime);
        return path;
    }
    void putTar(const QByteArray& script, TestSupport::EnvironmentGuard* environment) const {
        QFile(m_home.write("bin/tar", "#!/bin/sh\n" + script))
            .setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        environment->set("PATH", m_home.path().toUtf8() + "/bin:" + qgetenv("PATH"));
    }

private Q_SLOTS:
    void init() {
        settingsStore()->setOption("feedback.cfg.secret", "s3cret");
        m_server.files = {{"getUploadInfo", info(m_server.address("put?sig=hidden"))}, {"put", ""}};
        m_server.bodies.clear();
        m_server.requests.clear();
        settingsStore()->setOption("feedback.cfg.base_url", m_server.address({}).chopped(1));
    }

    void ends_data() {
        const Table<int, QString, QByteArray, QString> row("type", "path", "info", "error");
        const auto to = [this](const QString& path) { return info(m_server.address(path + "?sig=hidden")); };
        row("good", 0, m_picture, to("put"), "");
        row("good archive", 1, m_picture, to("put"), "");
        row("no such type", 2, m_picture, to("put"), "unknown");
        row("no file", 0, "/none", to("put"), "no such file");
        row("no status", 0, m_picture, R"({"datas":[]})", "no address");
        row("no list", 0, m_picture, R"({"status":200,"datas":{}})", "no address");
        row("local address", 0, m_picture, info("file:///etc/passwd?sig=hidden"), "no web address");
        row("no archiver", 1, m_picture, to("put"), "cannot be opened");
        row("archiver crashes", 1, "crash", to("put"), "crashed");
        row("archiver fails", 1, "gone", to("put"), "code 2");
        row("says no", 0, m_picture, R"({"status":403,"desc":"no room","datas":[]})", "no room");
        row("too large", 0, sparse("large.png", UploadFilesTask::MaximumBytes + 1), to("put"), "is larger");
        row("is being written", 0, "/proc/self/status", to("put"), "was changed");
        row("refused", 1, m_picture, to("gone"), "Not Found");
        row("breaks off", 0, m_picture, to("half/getUploadInfo"), "onnection");
        row("too slow", 0, m_picture, to("silent/put"), "not answered");
    }
    void ends() {
        QFETCH(int, type);
        QFETCH(QString, path);
        QFETCH(QByteArray, info);
        QFETCH(QString, error);
        TestSupport::EnvironmentGuard environment;
        if (error == "cannot be opened")
            environment.set("PATH", "/none");
        else if (error == "crashed")
            putTar("kill -9 $$\n", &environment);
        const LogCapture log;
        m_server.files["getUploadInfo"] = info;
        UploadFilesTask task({path}, type, ReportAccess::current(), 7);
        task.setTimeOut(error == "not answered" ? 100 : 20000);
        QSignalSpy ended(&task, &UploadFilesTask::sigUploadFinished);
        QSignalSpy progress(&task, &UploadFilesTask::sigUploadProgress);
        QThreadPool pool;
        pool.start(&task);
        QTRY_COMPARE(ended.size(), 1);
        QCOMPARE(ended[0][0].value<Status>(), error.isEmpty() ? Status::Success : Status::Failure);
        const QString text = ended[0][2].toString();
        QVERIFY2(text.contains(error) && (!error.isEmpty() || text == "key"), qPrintable(text));
        QCOMPARE(ended[0][3].toInt(), 7);
        QVERIFY(!error.isEmpty() || (!progress.isEmpty() && progress.last()[1] == progress.last()[2]));
        for (int i = 1; i < progress.size(); ++i)
            QVERIFY(progress[i][1].toLongLong() >= progress[i - 1][1].toLongLong());
        QCOMPARE(leftOvers(), QStringList());
        QVERIFY(!log.text().contains("hidden") && !log.text().contains("s3cret"));
    }

    void picturesThatChange() {
        auto* uploads = UploadFilesManager::instance();
        QSignalSpy ended(uploads, &UploadFilesManager::sigUploadFinished);
        QStringList contents;
        for (int i = 0; i < 9; ++i) {
            const QString name = QString("%1.png").arg(i);
            uploads->addTask({m_home.write(name, "old")}, UploadFilesTask::Image);
            // The server answers only later, and the picture is read after that.
            contents += QString(200000 + i, 'x');
            m_home.write(name, contents.last().toUtf8());
        }
        QTRY_COMPARE(ended.size(), 9);
        for (const QString& content : qAsConst(contents))
            QVERIFY(m_server.bodies.contains(content.toUtf8()));
        QCOMPARE(uploads->imagePool().maxThreadCount(), qMax(1, QThread::idealThreadCount() - 1));
        QCOMPARE(uploads->logPool().maxThreadCount(), 1);
        QVERIFY(uploads->pathsUnderWay().isEmpty());
    }

    void cancel_data() {
        const Table<QString, QString, QString> row("base", "put", "waitsFor");
        row("before they start", "", "put", "");
        row("asking for the address", "silent/", "put", "getUploadInfo");
        row("packing", "", "put", "tar");
        row("sending", "", "silent/put", "silent/put");
    }
    void cancel() {
        QFETCH(QString, base);
        QFETCH(QString, put);
        QFETCH(QString, waitsFor);
        TestSupport::EnvironmentGuard environment;
        const QString packing = m_home.path() + "/packing";
        if (waitsFor == "tar")
            putTar("touch '" + packing.toUtf8() + "'\nexec sleep 100\n", &environment);
        settingsStore()->setOption("feedback.cfg.base_url", m_server.address(base).chopped(1));
        m_server.files["getUploadInfo"] = info(m_server.address(put));
        auto* uploads = UploadFilesManager::instance();
        QSignalSpy ended(uploads, &UploadFilesManager::sigUploadFinished);
        for (const int type : {1, 1, 0})  // the second waits for the first
            uploads->addTask({m_picture}, type);
        if (waitsFor == "tar")
            QTRY_VERIFY(QFile::exists(packing));
        else if (!waitsFor.isEmpty())
            QTRY_VERIFY(m_server.requests.filter(waitsFor).size() >= 2);
        uploads->cancelAll();
        QTRY_COMPARE(ended.size(), 3);
        for (const QList<QVariant>& end : qAsConst(ended))  // a picture needs no packing
            QVERIFY(end[0].value<Status>() == Status::Failure || waitsFor == "tar");
        QTRY_COMPARE(leftOvers(), QStringList());
    }

    void leftOversOfAKilledProcess() {
        const QString place =
            QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation).mid(m_home.path().size() + 1);
        sparse(place + "/01234567-89ab-cdef-0123-456789abcdef.tar.gz", 5, 1);
        sparse(place + "/own.tar.gz", 5, 1);
        m_home.write(place + "/logs-abcDEF/a.log", "of now");
        UploadPlace::removeLeftOvers();
        QCOMPARE(leftOvers(), QStringList({"logs-abcDEF", "own.tar.gz"}));
        QDir(m_home.path() + '/' + place).removeRecursively();
    }

    void logsAreBounded() {
        const QString bottle = m_home.path() + "/bottle";
        m_home.write("bottle/bottle.yml", "Path: " + bottle.toUtf8() + '\n');
        const QByteArray secret = m_home.path().toUtf8();
        const int end = LogCollection::MaximumLogBytes, read = end + 4096;
        m_home.write("bottle/logs/cut.log",
                     QByteArray(100, '-') + secret + "/x\n" + QByteArray(end - 20, '-'));
        // One line, of which only the second half of a name is read.
        m_home.write("bottle/logs/wine-a.exe.txt",
                     (secret + ' ').repeated(read / secret.size() + 1) +
                         QByteArray((read - secret.size() / 2) % (secret.size() + 1), '-'));
        sparse("bottle/logs/large.log", 3 << 20);
        sparse("bottle/logs/wine-program-1.txt", 1 << 20);
        sparse("bottle/logs/command-old.txt", 10, 90);
        QFile::link("/etc/hostname", bottle + "/logs/link.log");
        m_home.write("service/large.log", "of the service");
        m_home.write("service/other.txt", "");
        for (int i = 0; i < 20; ++i)
            sparse(QString("service/%1.log").arg(i), 4 << 20, i + 1);
        for (int i = 0; i < LogCollection::MaximumFiles; ++i)
            sparse(QString("bottle/logs/many-%1").arg(i), 0, 100);
        const QTemporaryDir copies;
        LogCollection::gather({bottle, m_home.path() + "/service", "/none"}, copies.path());
        const QStringList names = QDir(copies.path()).entryList(QDir::Files);
        qint64 total = 0;
        for (const QString& name : names)
            total += QFileInfo(copies.filePath(name)).size();
        QVERIFY(total <= LogCollection::MaximumBytes);
        QCOMPARE(names.size(), LogCollection::MaximumFiles + 1);
        for (const char* name : {"bottle.yml", "2-large.log", "0.log", "wine-a.exe.txt", "command-old.txt"})
            QVERIFY2(names.contains(name), name);
        QVERIFY(!names.contains("link.log") && !names.contains("19.log") && !names.contains("other.txt"));
        QVERIFY(TestSupport::readFile(copies.filePath("wine-program-1.txt")).startsWith("begin"));
        QVERIFY(!TestSupport::readFile(copies.filePath("0.log")).startsWith("begin"));
        QCOMPARE(QFileInfo(copies.filePath("0.log")).size(), LogCollection::MaximumLogBytes);
        QCOMPARE(TestSupport::readFile(copies.filePath("bottle.yml")),
                 QByteArray("Path: @home_dir@/bottle\n"));
        for (const char* name : {"cut.log", "wine-a.exe.txt"})
            QVERIFY2(!TestSupport::readFile(copies.filePath(name)).contains(secret.right(6)), name);
    }

    void collectsLogs() {
        TestSupport::FakeBottleService service;
        QVERIFY(service.start());
        m_home.write("bottle/bottle.yml", "Runner: w\n");
        const QString suggestion = m_home.write("suggestions/a.log", "better");
        service.setBottle("office", {{"Path", m_home.path() + "/bottle"}});
        for (const auto collect : {&LogUpload::collectLogs, &LogUpload::collectConfiguration}) {
            for (const QString& bottle : {QString("none"), QString("office")}) {
                LogUpload upload;
                QSignalSpy ended(&upload, &LogUpload::finished);
                collect(bottle, &upload, [&upload, suggestion](const LogUpload::Copies& copies) {
                    upload.uploadConfiguration(copies, {suggestion});
                });
                QTRY_COMPARE(ended.size(), 1);
                QCOMPARE(ended[0][0].toString(), QString(bottle == "office" ? "key" : ""));
            }
        }
        QProcess tar;
        tar.start("tar", {"-tvzf", m_home.write("sent.tar.gz", m_server.bodies.last())});
        QVERIFY(tar.waitForFinished());
        const QByteArray list = tar.readAllStandardOutput();
        QVERIFY(list.contains("/bottle.yml") && list.contains("root/root") && !list.contains("/lumora"));
        QVERIFY(list.contains("./a.log") && QFile::exists(suggestion));
        QTRY_COMPARE(leftOvers(), QStringList());
    }

    void suggestionFiles() {
        const QString common = m_home.path() + "/common", elsewhere = m_home.write("elsewhere/a", "");
        const auto write = [&common] {
            return SuggestionFile::write(
                common, SuggestionFile::nameFor("../a/b|.\n", {{2026, 1, 2}, {3, 4, 5}}), "better");
        };
        const auto first = write(), second = write();
        QCOMPARE(first->path(), common + "/ab._suggestion_2026_01_02_03_04_05.log");
        QVERIFY(second && second->path() != first->path() && second->directory() == common);
        QCOMPARE(QFile::permissions(first->path()) & 0x77, 0);
        const QString killed = sparse("common/b_suggestion_2025.log", 5, 1), other = sparse("common/b", 5, 1);
        SuggestionFile::removeLeftOvers(common);
        QVERIFY(QFile::exists(first->path()) && QFile::exists(other) && !QFile::exists(killed));
        const QFile::Permissions forAll(0x7777);
        for (const bool isLink : {true, false}) {
            QDir(common).removeRecursively();
            if (isLink)
                QFile::link(QFileInfo(elsewhere).path(), common);
            else
                QVERIFY(QDir().mkdir(common) && QFile::setPermissions(common, forAll));
            const auto own = write();
            QVERIFY(own && own->directory() != common && QFile::exists(own->path()));
            QFile::remove(common);
        }
        QCOMPARE(QDir(QFileInfo(elsewhere).path()).entryList(QDir::Files), QStringList("a"));
        QVERIFY(QDir().rmdir(common) || !QFile::exists(common));
    }
};

QTEST_GUILESS_MAIN(UploadFilesTest)
#include "UploadFilesTest.moc"
