#include "store/install/SetupDownload.h"

#include <sys/resource.h>

#include <QCryptographicHash>
#include <QDir>
#include <csignal>

#include "backend/PendingWork.h"
#include "store/install/DownloadPart.h"
#include "store/install/FileHash.h"
#include "support/HttpServer.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

class SetupDownloadTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    TestSupport::HttpServer m_server;
    const QString m_directory = m_home.path() + "/Downloads";

    /// What is in the directory, hidden files too.
    QStringList found() const {
        return QDir(m_directory)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

private Q_SLOTS:
    void initTestCase() {
        QByteArray package(1024, '\0');
        package.replace(0, 8, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
        package[30] = 9;  // sectors of 512 bytes, of which the first is the root entry
        package.replace(512 + 80, 16, QByteArray("\x84\x10\x0C\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16));
        m_server.files = {{"setup.exe", "MZ" + QByteArray(300000, 'x')},
                          {"packed.msi", package},
                          {"letter.doc", package.left(512)},
                          {"pack.zip", "PK\3\4"},
                          {"page.exe", "<html>Download</html>"},
                          {"empty.exe", ""}};
    }
    void init() {
        QDir(m_directory).removeRecursively();
        m_server.etag.clear();
        m_server.requests.clear();
    }

    void downloads_data() {
        const Table<QString, QString, QString> row("path", "file", "error");
        row("program", "setup.exe", "setup.exe", "");
        row("package", "moved/packed.msi", "packed.msi", "");
        row("an old document", "letter.doc", "", "does not lead to a setup program");
        row("a page", "page.exe", "", "The address leads to a page");
        row("empty", "empty.exe", "", "The file is empty.");
        row("gone", "gone.exe", "", "no longer at its address");
        row("cut", "half/setup.exe", "", "check your network");
        row("to a local file", "away/setup.exe", "", "leads elsewhere");
        row("to itself", "loop/setup.exe", "", "leads elsewhere");
        row("a kind that is not wanted", "pack.zip", "", "It is an archive, not a program.");
    }
    void downloads() {
        QFETCH(QString, path);
        QFETCH(QString, file);
        QFETCH(QString, error);
        SetupDownload download(nullptr);
        QSignalSpy good(&download, &SetupDownload::succeeded);
        QSignalSpy bad(&download, &SetupDownload::failed);
        download.start(QUrl(m_server.address(path)), m_directory, "App");
        QTRY_COMPARE(good.size() + bad.size(), 1);
        QVERIFY(!download.isRunning());
        QCOMPARE(found(), file.isEmpty() ? QStringList() : QStringList(file));
        if (!file.isEmpty()) {
            QCOMPARE(good.first().first().toString(), m_directory + '/' + file);
            QCOMPARE(TestSupport::readFile(m_directory + '/' + file), m_server.files[file]);
        } else {
            QVERIFY2(bad.first().first().toString().contains(error),
                     qPrintable(bad.first().first().toString()));
        }
    }

    /// After the connection broke off: from there on, or anew if the file has changed.
    void resumes_data() {
        const Table<QByteArray, QByteArray, QStringList> row("before", "now", "requests");
        const QString whole = "broken/setup.exe@0", rest = "broken/setup.exe@150001",
                      other = "broken/setup.exe@2";
        row("the same", "\"1\"", "\"1\"", {whole, rest});
        row("another", "\"1\"", "\"2\"", {whole, whole, other});
        row("a weak tag", "W/\"1\"", "W/\"1\"", {whole, whole});
        row("no tag", "", "", {whole, whole});
    }
    void resumes() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, now);
        QFETCH(QStringList, requests);
        const auto files = m_server.files;
        SetupDownload download(nullptr);
        QSignalSpy good(&download, &SetupDownload::succeeded);
        QSignalSpy bad(&download, &SetupDownload::failed);
        const QUrl url(m_server.address("broken/setup.exe"));
        for (m_server.etag = before; good.isEmpty() && bad.size() < requests.size(); m_server.etag = now) {
            const int ends = bad.size() + 1;
            download.start(url, m_directory, "App");
            QTRY_COMPARE(good.size() + bad.size(), ends);
            QCOMPARE(download.canResume(url), good.isEmpty() && before.startsWith('"'));
            QVERIFY(!download.canResume(QUrl(m_server.address("setup.exe"))));
            if (before != now)
                m_server.files["setup.exe"] = "MZ##";
        }
        QCOMPARE(m_server.requests, requests);
        QCOMPARE(good.size(), int(before.startsWith('"')));
        if (!good.isEmpty())
            QCOMPARE(TestSupport::readFile(m_directory + "/setup.exe"), m_server.files["setup.exe"]);
        m_server.files = files;
    }

    void keepsWhatIsThere() {
        m_home.write("Downloads/setup.exe", "mine");
        SetupDownload download(nullptr);
        QSignalSpy good(&download, &SetupDownload::succeeded);
        download.start(QUrl(m_server.address("setup.exe")), m_directory, "App");
        QVERIFY(good.wait());
        QCOMPARE(TestSupport::readFile(m_directory + "/setup.exe"), QByteArray("mine"));
        QCOMPARE(found(), QStringList({"setup (1).exe", "setup.exe"}));
    }

    void interrupted_data() {
        const Table<bool, QByteArray> row("isDeleted", "tag");
        row("cancelled", false, "");
        row("deleted", true, "");
        row("cancelled, to be resumed", false, "\"1\"");
        row("deleted, to be resumed", true, "\"1\"");
    }
    /// What can be resumed is, also by another process, until it is discarded or old; else nothing is left.
    void interrupted() {
        QFETCH(bool, isDeleted);
        QFETCH(QByteArray, tag);
        m_server.etag = tag;
        const QUrl url(m_server.address("stalled/setup.exe"));
        auto download = std::make_unique<SetupDownload>(nullptr);
        for (int i = 0; i < 2; ++i) {
            QSignalSpy progress(download.get(), &SetupDownload::progressChanged);
            QSignalSpy cancelled(download.get(), &SetupDownload::cancelled);
            download->start(url, m_directory, "App");
            QVERIFY(PendingWork::instance()->isTransferring());
            QVERIFY(progress.wait());
            if (!isDeleted)
                download->cancel();
            QCOMPARE(cancelled.size(), isDeleted ? 0 : 1);
            if (isDeleted)
                download = std::make_unique<SetupDownload>(nullptr);
            QVERIFY(!PendingWork::instance()->isTransferring());
            QCOMPARE(found().size(), tag.isEmpty() ? 0 : 1);
        }
        QCOMPARE(m_server.requests.last().endsWith("@0"), tag.isEmpty());
        if (tag.isEmpty())
            return;
        if (isDeleted) {
            QFile part(m_directory + '/' + found().first());
            QVERIFY(part.open(QIODevice::ReadWrite));
            part.setFileTime(QDateTime::currentDateTime().addDays(-DownloadPart::DaysKept - 1),
                             QFileDevice::FileModificationTime);
            part.close();
            QSignalSpy good(download.get(), &SetupDownload::succeeded);
            download->start(QUrl(m_server.address("setup.exe")), m_directory, "App");
            QVERIFY(good.wait());
            QCOMPARE(found(), QStringList("setup.exe"));
        } else {
            download->discard();
            QCOMPARE(found(), QStringList());
        }
    }

    /// As on a full disk: in the midst, and with the last bytes.
    void fullDisk() {
        rlimit before{};
        ::getrlimit(RLIMIT_FSIZE, &before);
        ::signal(SIGXFSZ, SIG_IGN);
        for (const rlim_t bytes : {100000, 300001}) {
            const rlimit limit{bytes, before.rlim_max};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            SetupDownload download(nullptr);
            QSignalSpy bad(&download, &SetupDownload::failed);
            download.start(QUrl(m_server.address("setup.exe")), m_directory, "App");
            const bool hasFailed = bad.wait();
            ::setrlimit(RLIMIT_FSIZE, &before);
            QVERIFY(hasFailed);
            QVERIFY(bad.first().first().toString().startsWith("Nothing can be saved"));
            QCOMPARE(found(), QStringList());
        }
    }

    void nothingCanBeSaved() {
        const QString file = m_home.write("file", "");
        SetupDownload download(nullptr);
        QSignalSpy bad(&download, &SetupDownload::failed);
        download.start(QUrl(m_server.address("setup.exe")), file + "/below", "App");
        QVERIFY(bad.wait());
        QVERIFY(!download.isRunning());
    }

    /// The second file's sum comes, and only that.
    void hashes() {
        const QByteArray content(3 << 20, 'y');
        const QString first = m_home.write("first", "1"), second = m_home.write("second", content);
        FileHash hash(nullptr);
        QSignalSpy done(&hash, &FileHash::done);
        hash.start(first);
        hash.start(second);
        QVERIFY(done.wait());
        QCOMPARE(done.takeFirst().first().toByteArray(),
                 QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
        hash.start(m_home.path());
        QVERIFY(done.wait());
        QCOMPARE(done.takeFirst().first().toByteArray(), QByteArray());
        hash.start(first);
        hash.cancel();
        QVERIFY(!hash.isRunning());
        hash.start(second);
        QVERIFY(done.wait());
        QCOMPARE(done.size(), 1);
    }
};

QTEST_GUILESS_MAIN(SetupDownloadTest)
#include "SetupDownloadTest.moc"
