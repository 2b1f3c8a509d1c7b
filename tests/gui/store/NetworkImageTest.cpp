#include <QBuffer>
#include <QDir>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "core/base/Paths.h"
#include "fenk/style/Theme.h"
#include "store/images/LoadingAnimation.h"
#include "store/images/NetworkImageLabel.h"
#include "store/images/NetworkImageLoader.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

namespace {

QByteArray picture(const QSize& size, const char* format = "PNG") {
    QImage image(size, QImage::Format_Grayscale8);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QByteArray number(int value) {
    return QByteArray(1, char(value)) + char(value >> 8);
}

/// One pixel at a place of a screen that is as high as wide.
QByteArray gif(int screen, int left) {
    return "GIF89a" + number(screen) + number(screen) + '\x80' + QByteArray(2, 0) + QByteArray(6, 'c') + ',' +
           number(left) + QByteArray("\0\0\1\0\1\0\0\2\2\x44\1\0;", 13);
}

/// With an entry that says 16 pixels.
QByteArray ico(const QByteArray& png) {
    return QByteArray("\0\0\1\0\1\0\x10\x10\0\0\1\0\x20\0", 14) + number(png.size()) +
           number(png.size() >> 16) + QByteArray("\x16\0\0\0", 4) + png;
}

}  // namespace

class NetworkImageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        QDir(Paths::imageCacheDir()).removeRecursively();
        m_server = std::make_unique<TestSupport::HttpServer>();
        m_server->files["icon.png"] = picture({48, 48});
    }

    void loads_data() {
        const Table<QByteArray, QString, int, bool> row("bytes", "address", "edge", "isKept");
        constexpr int Default = 256;
        row("a picture", picture({48, 48}), "", 48, true);
        row("behind a redirect", picture({48, 48}), "moved/", 48, true);
        row("a large one", picture({4096, 8}), "", 512, true);
        row("one that is too wide", picture({4097, 8}), "", Default, false);
        row("more than 5 MiB", picture({48, 48}) + QByteArray((5 << 20) + 1, ' '), "", Default, false);
        row("one that does not end", picture({48, 48}) + QByteArray(2 << 20, ' '), "endless/", Default,
            false);
        row("no picture", "Name: One", "", Default, false);
        row("a format with a decoder that is not bounded", picture({48, 48}, "XPM"), "", Default, false);
        row("a GIF", gif(9, 0), "", 9, true);
        row("a GIF with a large screen", gif(16000, 0), "", Default, false);
        row("a GIF with a frame far away", gif(4000, 60000), "", Default, false);
        row("an ICO", ico(picture({48, 48})), "", 48, true);
        row("an ICO with a large picture", ico(picture({6000, 6000})), "", Default, false);
        row("nothing", "", "", Default, false);
        row("cut", picture({48, 48}), "half/", Default, false);
        row("missing", picture({48, 48}), "missing/no", Default, false);
        row("a redirect to a local file", picture({48, 48}), "away/", Default, false);
        row("a vector picture", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", "", 512,
            true);
    }
    void loads() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, address);
        QFETCH(int, edge);
        QFETCH(bool, isKept);
        m_server->files["icon.png"] = bytes;
        const QUrl url(m_server->address(address + "icon.png"));
        const QString kept = NetworkImageLoader::cacheFile(url);
        auto* loader = NetworkImageLoader::instance();
        QSignalSpy loaded(loader, &NetworkImageLoader::imageLoaded);
        QVERIFY(loader->load(url));
        QVERIFY(loaded.isEmpty());
        QTRY_COMPARE(loaded.size(), 1);
        QCOMPARE(loaded[0][0].toUrl(), url);
        QCOMPARE(loaded[0][1].value<QPixmap>().width(), edge);
        QCOMPARE(QFile::exists(kept), isKept);
        if (isKept && edge == 48)
            QCOMPARE(TestSupport::readFile(kept), bytes);
        if (!isKept)
            return;
        QVERIFY(!TestSupport::readFile(kept).startsWith('<'));  // drawn once
        // Inside the call, without asking again.
        const int requests = m_server->requests.size();
        QVERIFY(!loader->load(url));
        QCOMPARE(loaded.size(), 2);
        QCOMPARE(loaded[1][1].value<QPixmap>().width(), edge);
        QCOMPARE(m_server->requests.size(), requests);
    }

    void nameOfTheCacheFile() {
        QCOMPARE(NetworkImageLoader::cacheFile(QUrl("http://localhost/a b")),
                 Paths::imageCacheDir() + "/" +
                     QCryptographicHash::hash("http://localhost/a%20b", QCryptographicHash::Md5).toHex());
    }

    void addressesFromTheNet_data() {
        const Table<QString, bool> row("text", "isWeb");
        row("http", "http://localhost/a.png", true);
        row("https", "HTTPS://localhost/a.png", true);
        row("a local file", "file:///dev/zero", false);
        row("a path", "/etc/hostname", false);
        row("a resource", "qrc:/animate/loading_000.png", false);
        row("nothing", "", false);
    }
    void addressesFromTheNet() {
        QFETCH(QString, text);
        QTEST(!NetworkImageLoader::webUrl(text).isEmpty(), "isWeb");
    }

    void brokenCacheFileGivesTheDefaultOnce() {
        const QUrl url(m_server->address("icon.png"));
        QDir().mkpath(Paths::imageCacheDir());
        QFile file(NetworkImageLoader::cacheFile(url));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        auto* loader = NetworkImageLoader::instance();
        QSignalSpy loaded(loader, &NetworkImageLoader::imageLoaded);
        QVERIFY(!loader->load(url));
        QCOMPARE(loaded.size(), 1);
        QCOMPARE(loaded[0][1].value<QPixmap>().width(), 256);
        QVERIFY(loader->load(url));
        QTRY_COMPARE(loaded.size(), 2);
        QCOMPARE(loaded[1][1].value<QPixmap>().width(), 48);
    }

    void localFilesAndBadAddresses() {
        auto* loader = NetworkImageLoader::instance();
        QSignalSpy loaded(loader, &NetworkImageLoader::imageLoaded);
        const QString file = m_home.write("icon.png", picture({16, 16}));
        QVERIFY(!loader->load(QUrl::fromLocalFile(file)));
        QCOMPARE(loaded.takeFirst()[1].value<QPixmap>().width(), 16);
        // A device would be read for ever.
        QVERIFY(!loader->load(QUrl("file:///dev/zero")));
        QCOMPARE(loaded.takeFirst()[1].value<QPixmap>().width(), 256);
        for (const char* address : {"", "data:image/png;base64,AAAA", "qrc:/animate/loading_000.png"}) {
            QVERIFY(!loader->load(QUrl(address)));
            QTRY_COMPARE(loaded.size(), 1);
            QCOMPARE(loaded.takeFirst()[1].value<QPixmap>().width(), 256);
        }
    }

    void labelFollowsItsAddress() {
        m_server->files["other.png"] = picture({20, 20});
        NetworkImageLabel label;
        label.resize(56, 56);
        QSignalSpy loaded(&label, &NetworkImageLabel::loaded);
        label.setUrl(QUrl(m_server->address("silent/icon.png")));
        QTRY_COMPARE(m_server->requests.size(), 1);
        QVERIFY(label.isLoading());
        label.setUrl(QUrl(m_server->address("other.png")));  // aborts the first
        QVERIFY(loaded.wait());
        QCOMPARE(label.pixmap().width(), 20);
        label.setUrl(QUrl(m_server->address("other.png")));  // from disk, inside the call
        QCOMPARE(loaded.size(), 2);
        label.setUrl(QUrl(m_server->address("silent/icon.png")));
        label.setPixmap(QPixmap(5, 5));
        QCOMPARE(label.pixmap().width(), 5);
    }

    void oneDownloadForAllWhoAsk() {
        const QUrl url(m_server->address("icon.png"));
        NetworkImageLabel first;
        NetworkImageLabel second;
        QSignalSpy loaded(&first, &NetworkImageLabel::loaded);
        first.setUrl(url);
        second.setUrl(url);
        second.setPixmap(QPixmap(5, 5));  // leaves the other's load alone
        QVERIFY(loaded.wait());
        QCOMPARE(first.pixmap().width(), 48);
        QCOMPARE(m_server->requests, QStringList("icon.png@0"));

        auto* loader = NetworkImageLoader::instance();
        const QUrl silent(m_server->address("silent/icon.png"));
        QPointer<QNetworkReply> reply = loader->load(silent);
        QCOMPARE(loader->load(silent), reply.data());
        loader->release(silent);
        QVERIFY(reply->isRunning());
        loader->release(silent);
        QVERIFY(!reply->isRunning());
        QVERIFY(loader->load(silent) != reply);
        loader->release(silent);
    }

    void oneTimerForAllAnimations() {
        auto* animation = LoadingAnimation::instance();
        for (int frame = 0; frame < LoadingAnimation::Frames; ++frame)
            QVERIFY(QFile::exists(QString(":/animate/loading_%1.png").arg(frame, 3, 10, QChar('0'))));
        Fenk::Theme::instance()->setAnimationsEnabled(true);
        auto first = std::make_unique<NetworkImageLabel>();
        NetworkImageLabel second;
        QVERIFY(!animation->isRunning());  // nothing is visible
        first->show();
        second.show();
        QVERIFY(animation->isRunning());
        second.setPixmap(QPixmap(5, 5));
        QVERIFY(animation->isRunning());
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        QVERIFY(!animation->isRunning());
        Fenk::Theme::instance()->setAnimationsEnabled(true);
        QVERIFY(animation->isRunning());
        first.reset();
        QVERIFY(!animation->isRunning());
    }

private:
    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::HttpServer> m_server;
};

QTEST_MAIN(NetworkImageTest)
#include "NetworkImageTest.moc"
