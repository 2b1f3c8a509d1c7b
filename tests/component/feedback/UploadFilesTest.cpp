#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QThread>

#include "core/base/SettingsStore.h"
#include "feedback/client/LogCollection.h"
#include "feedback/client/LogUpload.h"
#include "feedback/client/UploadFilesManager.h"
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
        row("no JSON", 0, m_picture, "<html>", "no address");
        row("local address", 0, m_picture, info("file:///etc/passwd?sig=hidden"), "no web address");
        row("refused", 1, m_picture, to("gone"), "Not Found");
        row("breaks off", 0, m_picture, to("half/getUploadInfo"), "onnection");
        row("too slow", 0, m_picture, to("silent/put"), "not answered");
    }
    void ends() {
        QFETCH(int, type);
        QFETCH(QString, path);
        QFETCH(QByteArray, info);
        QFETCH(QString, error);
        const LogCapture log;
        m_server.files["getUploadInfo"] = info;
        UploadFilesTask task({path}, type, ReportAccess::current(), 7);
        task.setTimeOut(error == "not answered" ? 100 : 20000);
        QSignalSpy ended(&task, &UploadFilesTask::sigUploadFinished);
        QThreadPool pool;
        pool.start(&task);
        QTRY_COMPARE(ended.size(), 1);
        QCOMPARE(ended[0][0].value<Status>(), error.isEmpty() ? Status::Success : Status::Failure);
        const QString text = ended[0][2].toString();
        QVERIFY2(text.contains(error) && (!error.isEmpty() || text == "key"), qPrintable(text));
        QCOMPARE(ended[0][3].toInt(), 7);
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
        QFile(m_home.write("bin/tar", "#!/bin/sh\ntouch '" + packing.toUtf8() + "'\nexec sleep 100\n"))
            .setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        if (waitsFor == "tar")
            environment.set("PATH", m_home.path().toUtf8() + "/bin:" + qgetenv("PATH"));
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

    void logsAreBounded() {
        const QString bottle = m_home.path() + "/bottle";
        m_home.write("bottle/bottle.yml", "Runner: w\n");
        sparse("bottle/logs/large.log", 3 << 20);
        sparse("bottle/logs/whole.log", 1 << 20);
        QFile::link("/etc/hostname", bottle + "/logs/link.log");
        m_home.write("service/large.log", "of the service");
        for (int i = 0; i < 20; ++i)
            sparse(QString("service/%1.log").arg(i), 4 << 20, i + 1);
        const QTemporaryDir copies;
        LogCollection::gather({bottle, m_home.path() + "/service", "/none"}, copies.path());
        qint64 total = 0;
        QStringList names;
        for (const QFileInfo& file : QDir(copies.path()).entryInfoList(QDir::Files)) {
            total += file.size();
            names += file.fileName();
        }
        QVERIFY(total <= LogCollection::MaximumBytes);
        QVERIFY(names.contains("bottle.yml") && names.contains("2-large.log") && names.contains("0.log"));
        QVERIFY(!names.contains("link.log") && !names.contains("19.log"));
        QVERIFY(TestSupport::readFile(copies.filePath("whole.log")).startsWith("begin"));
        QVERIFY(!TestSupport::readFile(copies.filePath("0.log")).startsWith("begin"));
        QCOMPARE(QFileInfo(copies.filePath("0.log")).size(), LogCollection::MaximumLogBytes);
    }

    void collectsLogs() {
        TestSupport::FakeBottleService service;
        QVERIFY(service.start());
        m_home.write("bottle/bottle.yml", "Runner: w\n");
        service.setBottle("office", {{"Path", m_home.path() + "/bottle"}});
        for (const auto start : {&LogUpload::uploadConfiguration, &LogUpload::collectLogs}) {
            for (const QString& bottle : {QString("none"), QString("office")}) {
                LogUpload upload;
                QSignalSpy ended(&upload, &LogUpload::finished);
                (upload.*start)(bottle);
                QTRY_COMPARE(ended.size(), 1);
                QCOMPARE(ended[0][0].toString(), QString(bottle == "office" ? "key" : ""));
            }
        }
        QProcess tar;
        tar.start("tar", {"-tzf", m_home.write("sent.tar.gz", m_server.bodies.last())});
        QVERIFY(tar.waitForFinished() && tar.readAllStandardOutput().contains("/bottle.yml"));
        QTRY_COMPARE(leftOvers(), QStringList());
    }
};

QTEST_GUILESS_MAIN(UploadFilesTest)
#include "UploadFilesTest.moc"
