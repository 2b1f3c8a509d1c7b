#include <archive.h>
#include <archive_entry.h>

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QtTest>

#include "bottleservice/components/Archive.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/components/Download.h"
#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/components/Recipe.h"
#include "support/HttpServer.h"

namespace {

const std::atomic_bool NotCancelled{false};

void write(const QString& path, const QByteArray& content) {
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// "name" is a file with its own name in it, "name/" a directory, "name -> target" a link, "name => target" a
/// hard link, "name |" a pipe.
QByteArray packed(const QStringList& entries) {
    QByteArray buffer(1024 * 1024, 0);
    size_t used = 0;
    archive* writer = archive_write_new();
    archive_write_set_format_pax_restricted(writer);
    archive_write_add_filter_gzip(writer);
    archive_write_open_memory(writer, buffer.data(), size_t(buffer.size()), &used);
    for (const QString& text : entries) {
        archive_entry* entry = archive_entry_new();
        const bool isHard = text.contains(" => ");
        const QStringList parts = text.split(isHard ? " => " : " -> ");
        const QByteArray name = parts[0].toUtf8();
        archive_entry_set_pathname(entry,
                                   name.endsWith(" |") ? name.chopped(2).constData() : name.constData());
        archive_entry_set_perm(entry, 04755);
        archive_entry_set_filetype(entry, name.endsWith('/')    ? AE_IFDIR
                                          : name.endsWith(" |") ? AE_IFIFO
                                                                : AE_IFREG);
        if (parts.size() > 1 && isHard) {
            archive_entry_set_hardlink(entry, parts[1].toUtf8().constData());
        } else if (parts.size() > 1) {
            archive_entry_set_filetype(entry, AE_IFLNK);
            archive_entry_set_symlink(entry, parts[1].toUtf8().constData());
        } else if (archive_entry_filetype(entry) == AE_IFREG) {
            archive_entry_set_size(entry, name.size());
        }
        archive_write_header(writer, entry);
        archive_write_data(writer, name.constData(), size_t(name.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    return buffer.left(int(used));
}

QByteArray sha256(const QByteArray& data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

}  // namespace

/// What brings components to the machine and into prefixes, without the service around it.
class tst_Components : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

private Q_SLOTS:
    void unpacking_data() {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<bool>("isGood");
        const auto row = [](const char* name, const QStringList& entries, bool good) {
            QTest::newRow(name) << entries << good;
        };
        row("links inside",
            {"v/", "v/bin/wine", "v/l -> bin/wine", "v/bin/up -> ../l", "v/h => v/bin/wine", "other",
             "v/out -> ../other"},
            true);
        row("name up", {"good", "../escaped"}, false);
        row("name up inside", {"a/../../escaped"}, false);
        row("absolute", {"/tmp/../escaped"}, false);
        row("backslashes", {"..\\escaped"}, false);
        row("link up", {"a/l -> ../../escaped"}, false);
        row("link absolute", {"l -> /etc"}, false);
        row("link over a link", {"x/l -> ..", "m -> x/l/../.."}, false);
        row("through a link", {"d/", "l -> d", "l/escaped"}, false);
        row("hard link", {"h => ../secret"}, false);
        row("pipe", {"p |"}, false);
    }
    void unpacking() {
        QFETCH(QStringList, entries);
        QTemporaryDir dir;
        const QString target = dir.filePath("a/b/target");
        QVERIFY(QDir().mkpath(target));
        write(dir.filePath("a/b/secret"), "s");
        write(dir.filePath("x.tar.gz"), packed(entries));
        const QString fault = Archive::unpack(dir.filePath("x.tar.gz"), target, NotCancelled);
        QTEST(fault.isEmpty(), "isGood");
        QCOMPARE(QDir(dir.filePath("a/b")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({"secret", "target"}));
        QVERIFY(!QFile::exists(dir.filePath("a/escaped")) && !QFile::exists(target + "/d/escaped"));
        if (fault.isEmpty()) {
            QCOMPARE(read(target + "/v/bin/up"), QByteArray("v/bin/wine"));
            QCOMPARE(Archive::leavingLink(target), QString());
            QVERIFY(Archive::leavingLink(target + "/v").contains("out"));
            QCOMPARE(QFile::permissions(target + "/v/bin/wine") & QFile::WriteOther, QFile::Permissions());
        }
        // Cut off: told, and never a crash.
        write(dir.filePath("y.tar.gz"), packed(entries).chopped(20));
        QVERIFY(!Archive::unpack(dir.filePath("y.tar.gz"), target, NotCancelled).isEmpty());
        QVERIFY(!Archive::unpack(dir.filePath("none"), target, NotCancelled).isEmpty());
    }

    void extraction() {
        const QString archive = m_dir.filePath("redist.exe");
        write(m_dir.filePath("in/a_x64.cab"), packed({"some/D3DX9.DLL", "other.dll"}));
        write(m_dir.filePath("in/a_x86.cab"), packed({"d3dx9.dll"}));
        QProcess tar;
        tar.start("tar", {"-C", m_dir.filePath("in"), "-cf", archive, "."});
        QVERIFY(tar.waitForFinished());
        QStringList paths;
        const QString out = m_dir.filePath("out");
        QVERIFY(QDir().mkpath(out));
        QCOMPARE(Archive::extract(archive, {"d3dx9.dll"}, out, &paths, NotCancelled), QString());
        QCOMPARE(paths.size(), 2);
        for (const QString& path : qAsConst(paths))
            QVERIFY(path.startsWith(out) && path.endsWith("/d3dx9.dll") && QFile::exists(path));
    }

    void download_data() {
        QTest::addColumn<QStringList>("addresses");
        QTest::addColumn<bool>("hasChecksum");
        QTest::addColumn<QStringList>("requests");  ///< empty for a failure
        const auto row = [](const char* name, const QStringList& addresses, bool checksum,
                            const QStringList& requests) {
            QTest::newRow(name) << addresses << checksum << requests;
        };
        row("whole", {"file"}, true, {"file@0"});
        row("second address", {"gone", "wrong", "file"}, true, {"gone@0", "wrong@0", "file@0"});
        row("breaks", {"half/file"}, true, {});
        row("resumed elsewhere", {"half/file", "file"}, true,
            {"half/file@0", "half/file@500", "half/file@750", "half/file@875", "file@937"});
        row("half of another", {"half/wrong", "file"}, true,
            {"half/wrong@0", "half/wrong@500", "half/wrong@750", "half/wrong@875", "file@937", "file@0"});
        row("halves of unknown", {"half/file", "file"}, false, {"half/file@0", "file@0"});
        row("too long", {"endless/file"}, true, {});
        row("silent", {"silent/file", "file"}, true, {"silent/file@0", "file@0"});
        row("wrong", {"wrong"}, true, {});
        row("nowhere", {}, true, {});
        row("no address", {"x/../../etc/passwd", "ftp://x/y"}, true, {});
    }
    void download() {
        QFETCH(QStringList, addresses);
        QFETCH(bool, hasChecksum);
        QFETCH(QStringList, requests);
        TestSupport::HttpServer server;
        const QByteArray content(1000, 'x');
        server.files = {{"file", content}, {"wrong", QByteArray(1000, 'y')}};
        QTemporaryDir dir;
        Source source{"file.exe", {}, 1000, hasChecksum ? sha256(content) : QByteArray()};
        for (const QString& address : addresses)
            source.addresses += server.address(address);
        QNetworkAccessManager network;
        Download download(&network, source, dir.path());
        download.setStallMs(300);
        QSignalSpy finished(&download, &Download::finished);
        download.start();
        QVERIFY(finished.isEmpty());
        QVERIFY(finished.wait(20000));
        const QString path = finished[0][0].toString();
        QCOMPARE(path.isEmpty(), requests.isEmpty());
        QCOMPARE(finished[0][1].toString().isEmpty(), !requests.isEmpty());
        QCOMPARE(QFile::exists(dir.filePath("file.exe")), !requests.isEmpty());
        if (requests.isEmpty())
            return;
        // The network library asks a second time where a connection ends early.
        for (int i = server.requests.size() - 1; i > 0; --i) {
            if (server.requests[i] == server.requests[i - 1])
                server.requests.removeAt(i);
        }
        QCOMPARE(server.requests, requests);
        QCOMPARE(read(path), content);
        QVERIFY(!QFile::exists(path + ".part"));
        // Once is enough, and a spoilt file is fetched again.
        server.requests.clear();
        write(path, hasChecksum ? QByteArray(1000, 'z') : content);
        Download second(&network, source, dir.path());
        second.setStallMs(300);
        QSignalSpy again(&second, &Download::finished);
        second.start();
        QVERIFY(again.wait(20000));
        QCOMPARE(read(path), content);
        QCOMPARE(server.requests.isEmpty(), !hasChecksum);
    }

    void localFiles() {
        write(m_dir.filePath("mirror/setup.exe"), "content");
        QNetworkAccessManager network;
        Download download(&network,
                          {"setup.exe", {"/nowhere/setup.exe", m_dir.filePath("mirror/setup.exe")}, 7, {}},
                          m_dir.filePath("downloads"));
        QSignalSpy finished(&download, &Download::finished);
        download.start();
        QVERIFY(finished.wait());
        QCOMPARE(read(finished[0][0].toString()), QByteArray("content"));
    }

    void plans() {
        const Recipes recipes("/nowhere", TEST_DATA_DIR "/components");
        const auto names = [&](const QString& name, const QStringList& installed) {
            QString error;
            QStringList list;
            for (const Recipe& recipe : recipes.plan(name, installed, &error))
                list += recipe.name;
            return error.isEmpty() ? list.join(' ') : QString("refused");
        };
        QCOMPARE(names("a", {}), QString("c b a"));
        QCOMPARE(names("a", {"b", "c", "a"}), QString("a"));
        for (const char* bad : {"loop", "lost", "up", "key", "none"})
            QCOMPARE(names(bad, {}), QString("refused"));
        QCOMPARE(recipes.find("c")->files(), QStringList{"c.msi"});
        QCOMPARE(recipes.find("b")->steps[0].mode, QString("n,b"));
    }

    /// Everything that is delivered can be read, and what it needs is there.
    void catalogue() {
        const Recipes recipes(CATALOGUE_DIR, "/nowhere");
        const Sources sources(CATALOGUE_DIR, "/nowhere");
        QFile file(QString(CATALOGUE_DIR) + "/dependency.json");
        QVERIFY(file.open(QIODevice::ReadOnly));
        for (const QString& name : QJsonDocument::fromJson(file.readAll()).object().keys()) {
            QString error;
            const QVector<Recipe> plan = recipes.plan(name, {}, &error);
            QVERIFY2(!plan.isEmpty() && error.isEmpty(), qPrintable(name + ' ' + error));
            for (const Recipe& recipe : plan) {
                bool hasAll = !recipe.steps.isEmpty();
                for (const QString& wanted : recipe.files())
                    hasAll = hasAll && !sources.find(wanted).addresses.isEmpty();
                QVERIFY2(hasAll || !recipe.winetricks.isEmpty(), qPrintable(name + " has no way"));
            }
        }
    }

    void backups() {
        const QString bottle = m_dir.filePath("bottle");
        const QString windows = bottle + "/drive_c/windows";
        write(windows + "/system32/a.dll", "old");
        write(bottle + "/system.reg", "old");
        QCOMPARE(BottleBackup::state(bottle), BottleBackup::State::None);
        QCOMPARE(BottleBackup::make(bottle, "id1", NotCancelled), QString());
        QCOMPARE(BottleBackup::idOf(bottle), QString("id1"));
        QVERIFY(!BottleBackup::make(bottle, "id2", NotCancelled).isEmpty());
        write(windows + "/system32/a.dll", "new");
        write(windows + "/system32/b.dll", "new");
        write(bottle + "/system.reg", "new");
        // As after a kill between the two renames and a start of the bottle.
        write(BottleBackup::pathOf(bottle) + "/failed-1/x", "");
        for (int again = 0; again < 2; ++again) {
            QCOMPARE(BottleBackup::restore(bottle), QString());
            QCOMPARE(read(windows + "/system32/a.dll") + read(bottle + "/system.reg"), QByteArray("oldold"));
            QVERIFY(!QFile::exists(windows + "/system32/b.dll"));
        }
        QCOMPARE(BottleBackup::dismiss(bottle), QString());
        QCOMPARE(BottleBackup::state(bottle), BottleBackup::State::Unfinished);
    }

    void systemFiles() {
        const QString prefix = m_dir.filePath("prefix");
        const QString windows = prefix + "/drive_c/windows/";
        QByteArray pe(0x100, 0);
        pe[0x3c] = char(0x80);
        pe.replace(0x80, 6, QByteArray("PE\0\0\x64\x86", 6));
        write(m_dir.filePath("n64/x.dll"), pe);
        write(m_dir.filePath("n32/x.dll"), pe.replace(0x84, 2, QByteArray("\x4c\x01", 2)));
        write(windows + "syswow64/other", "");
        write(m_dir.filePath("runner/x.dll"), "the runner's");
        QVERIFY(QDir().mkpath(windows + "system32"));
        QVERIFY(QFile::link(m_dir.filePath("runner/x.dll"), windows + "system32/x.dll"));
        const QStringList files{m_dir.filePath("n64/x.dll"), m_dir.filePath("n32/x.dll")};
        QCOMPARE(PrefixFiles::putSystemFiles(prefix, files, false), QString());
        QCOMPARE(read(windows + "system32/x.dll"), read(files[0]));
        QCOMPARE(read(windows + "syswow64/x.dll"), read(files[1]));
        QCOMPARE(read(m_dir.filePath("runner/x.dll")), QByteArray("the runner's"));
        // A directory that leads elsewhere is refused.
        QVERIFY(QDir(windows + "system32").removeRecursively());
        QVERIFY(QFile::link(m_dir.filePath("runner"), windows + "system32"));
        QVERIFY(!PrefixFiles::putSystemFiles(prefix, files, false).isEmpty());
        QCOMPARE(read(m_dir.filePath("runner/x.dll")), QByteArray("the runner's"));
    }
};

QTEST_GUILESS_MAIN(tst_Components)
#include "tst_components.moc"
