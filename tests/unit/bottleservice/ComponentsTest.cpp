#include <archive.h>
#include <archive_entry.h>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QSignalSpy>

#include "bottleservice/components/Archive.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/components/Download.h"
#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/wine/Runners.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::readFile;
using TestSupport::Table;
using TestSupport::TestHome;

namespace {

const std::atomic_bool NotCancelled{false};

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
        archive_entry_set_perm(entry, 04777);
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

/// What the rules of the log, the inspection of a file and the repair may ask for, read from where it stands.
QSet<QString> namedComponents() {
    // A name stands behind one of these words, or as the second of a pair.
    static const QRegularExpression name(
        "(?:LogMissingComponent, |\\{\"[^\"]+\",\\s*|return |\\? |\\badd\\(|Component\\[\\] = "
        ")\"([a-z]+[0-9]*)\"");
    QSet<QString> names;
    QDirIterator files(FRONTEND_DIR "/launch", {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QFileInfo file(files.next());
        if (file.dir().dirName() != "winelog" &&
            !QStringList{"ExeDetection.cpp", "ProgramAppFixer.cpp"}.contains(file.fileName()))
            continue;
        auto match = name.globalMatch(QString::fromUtf8(readFile(file.filePath())));
        while (match.hasNext())
            names += match.next().captured(1);
    }
    // The versions of .NET that have such a runtime.
    if (names.remove("dotnetcoredesktop")) {
        for (const int version : {3, 5, 6, 7, 8, 9, 10})
            names += QString("dotnetcoredesktop%1").arg(version);
    }
    for (const QJsonValue& ofDll :
         QJsonDocument::fromJson(readFile(CATALOGUE_DIR "/dlls_search.json")).object()) {
        for (const QJsonValue& component : ofDll.toArray())
            names += component.toString();
    }
    return names;
}

QByteArray sha256(const QByteArray& data) {
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

}  // namespace

/// What brings components to the machine and into prefixes, without the service around it.
class ComponentsTest : public QObject {
    Q_OBJECT

    TestHome m_home;

private Q_SLOTS:
    void unpacking_data() {
        const Table<QStringList, bool> row("entries", "isGood");
        row("links inside",
            {"v/", "v/bin/wine", "v/l -> bin/wine", "v/bin/up -> ../l", "v/h => v/bin/wine", "other",
             "v/out -> ../other"},
            true);
        row("name up", {"good", "a/../../escaped"}, false);
        row("absolute", {"/escaped"}, false);
        row("backslashes", {"..\\escaped"}, false);
        row("link up", {"a/l -> ../../escaped"}, false);
        row("link absolute", {"l -> /etc"}, false);
        row("link over a link", {"x/l -> ..", "a/b/m -> x/l/../.."}, false);
        row("through a link", {"d/", "l -> d", "l/escaped"}, false);
        row("hard link", {"h => ../secret"}, false);
        row("pipe", {"p |"}, false);
    }
    void unpacking() {
        QFETCH(QStringList, entries);
        const TestHome home;
        const QString around = home.path() + "/a/b";
        const QString target = around + "/target";
        QVERIFY(QDir().mkpath(target));
        home.write("a/b/secret", "s");
        const QString fault =
            Archive::unpack(home.write("x.tar.gz", packed(entries)), target, NotCancelled).text();
        QTEST(fault.isEmpty(), "isGood");
        QCOMPARE(QDir(around).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({"secret", "target"}));
        QVERIFY(!QFile::exists(home.path() + "/a/escaped") && !QFile::exists(target + "/d/escaped"));
        if (fault.isEmpty()) {
            QCOMPARE(readFile(target + "/v/bin/up"), QByteArray("v/bin/wine"));
            QCOMPARE(Archive::leavingLink(target), QString());
            QVERIFY(Archive::leavingLink(target + "/v").contains("out"));
            QCOMPARE(QFile::permissions(target + "/v/bin/wine") & QFile::WriteOther, QFile::Permissions());
        }
        // Cut off: told, and never a crash.
        const QString cut = home.write("y.tar.gz", packed(entries).chopped(20));
        for (const QString& archive : {cut, home.path() + "/none"})
            QVERIFY(!Archive::unpack(archive, target, NotCancelled).isEmpty());
    }

    void extraction() {
        m_home.write("in/a_x64.cab", packed({"some/D3DX9.DLL", "other.dll"}));
        m_home.write("in/a_x86.cab", packed({"d3dx9.dll"}));
        const QString archive = m_home.path() + "/redist.exe";
        QCOMPARE(QProcess::execute("tar", {"-C", m_home.path() + "/in", "-cf", archive, "."}), 0);
        QStringList paths;
        const QString out = m_home.path() + "/out";
        QVERIFY(QDir().mkpath(out));
        QCOMPARE(Archive::extract(archive, {"d3dx9.dll"}, out, &paths, NotCancelled).text(), QString());
        QCOMPARE(paths.size(), 2);
        const QString cut = m_home.write("cut.exe", readFile(archive).left(700));
        QVERIFY(!Archive::extract(cut, {"d3dx9.dll"}, out, &paths, NotCancelled).isEmpty());
        for (const QString& path : qAsConst(paths))
            QVERIFY(path.startsWith(out) && path.endsWith("/d3dx9.dll") && QFile::exists(path));
    }

    void download_data() {
        const Table<QStringList, bool, QStringList> row("addresses", "hasChecksum", "requests");
        row("whole", {"file"}, true, {"file@0"});
        row("second address", {"gone", "wrong", "file"}, true, {"gone@0", "wrong@0", "file@0"});
        row("resumed elsewhere", {"half/file", "file"}, true,
            {"half/file@0", "half/file@500", "half/file@750", "half/file@875", "file@937"});
        row("half of another", {"half/wrong", "file"}, true,
            {"half/wrong@0", "half/wrong@500", "half/wrong@750", "half/wrong@875", "file@937", "file@0"});
        row("halves of unknown", {"half/file", "file"}, false, {"half/file@0", "file@0"});
        row("silent", {"silent/file", "file"}, true, {"silent/file@0", "file@0"});
        // Without requests: it fails.
        row("breaks", {"half/file"}, true, {});
        row("too long", {"endless/file"}, true, {});
        row("no address", {"x/../../etc/passwd", "ftp://x/y"}, true, {});
    }
    void download() {
        QFETCH(QStringList, addresses);
        QFETCH(bool, hasChecksum);
        QFETCH(QStringList, requests);
        TestSupport::HttpServer server;
        const QByteArray content(1000, 'x');
        server.files = {{"file", content}, {"wrong", QByteArray(1000, 'y')}};
        const TestHome home;
        Source source{"file.exe", {}, 1000, hasChecksum ? sha256(content) : QByteArray()};
        for (const QString& address : addresses)
            source.addresses += server.address(address);
        QNetworkAccessManager network;
        const auto fetch = [&] {
            Download download(&network, source, home.path());
            download.setStallMs(300);
            qRegisterMetaType<Reason>();
            QSignalSpy finished(&download, &Download::finished);
            download.start();
            const bool isQueued = finished.isEmpty();
            return isQueued && finished.wait(20000) ? finished[0] : QVariantList{"never", "or at once"};
        };
        const QVariantList end = fetch();
        const QString path = end[0].toString();
        QCOMPARE(path, requests.isEmpty() ? QString() : home.path() + "/file.exe");
        QCOMPARE(end[1].value<Reason>().isEmpty(), !requests.isEmpty());
        QCOMPARE(QFile::exists(home.path() + "/file.exe"), !requests.isEmpty());
        if (requests.isEmpty())
            return;
        // The network library asks a second time where a connection ends early.
        const auto last = std::unique(server.requests.begin(), server.requests.end());
        server.requests.erase(last, server.requests.end());
        QCOMPARE(server.requests, requests);
        QCOMPARE(readFile(path), content);
        QVERIFY(!QFile::exists(path + ".part"));
        // Once is enough, and a spoilt file is fetched again.
        server.requests.clear();
        home.write("file.exe", hasChecksum ? QByteArray(1000, 'z') : content);
        QCOMPARE(fetch()[0].toString(), path);
        QCOMPARE(readFile(path), content);
        QCOMPARE(server.requests.isEmpty(), !hasChecksum);
    }

    void plans() {
        const Recipes recipes("/nowhere", TEST_DATA_DIR "/components");
        const auto names = [&](const QString& name, const QStringList& installed) {
            Reason error;
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

    /// Everything that is delivered can be installed by one way or the other, and what the program itself can
    /// ask for on any machine with a network.
    void catalogue() {
        const Recipes recipes(CATALOGUE_DIR, "/nowhere");
        const Sources sources(CATALOGUE_DIR, "/nowhere");
        const auto refusal = [&](const QString& name, bool hasWinetricks,
                                 std::optional<RecipeTarget> target = {}) {
            return InstallPlan::make({name, {}, hasWinetricks, std::move(target)}, recipes, sources)
                .refusal.text();
        };
        const QStringList all = recipes.names();
        for (const QString& name : all)
            QCOMPARE(refusal(name, true), QString());
        // Only winetricks installs these: no checksum of their files is known, mdx must be registered with
        // .NET, and vcredist2003 was published only within other products.
        const QSet<QString> exceptions{"gfw",    "mdx",         "mf",           "mfc40", "mfc70",
                                       "speech", "vb6controls", "vcredist2003", "vfw"};
        const QSet<QString> named = namedComponents();
        QVERIFY(named.contains("mono9") && named.contains("mdac28") && named.contains("vbrun6"));
        for (const QString& name : named) {
            const QString errorText = refusal(name, false);
            QVERIFY2(errorText.isEmpty() != exceptions.contains(name), qPrintable(name + ": " + errorText));
            QCOMPARE(errorText.contains("winetricks"), !errorText.isEmpty());
            for (const bool is64Bit : {false, true})
                QCOMPARE(refusal(name, true, RecipeTarget{is64Bit, true, {"wine-gecko-2.47.3"}}), QString());
        }
        QVERIFY(refusal("gecko", true, RecipeTarget{true, true, {"wine-gecko-9"}})
                    .contains("Wine of this bottle"));
        for (const QString& kind : ComponentStore::kinds())
            QVERIFY(!sources.components(kind).isEmpty());
        for (const char* runner : {Runners::DefaultName, Runners::StagingName})
            QCOMPARE(sources.refusal("runner", runner).text(), QString());
    }

    /// A row that makes no sense is refused and told; those beside it count, and the one that it would
    /// replace.
    void badEntries() {
        TestSupport::LogCapture log;
        const Sources sources(TEST_DATA_DIR "/components/good", TEST_DATA_DIR "/components/bad");
        const Recipes recipes(TEST_DATA_DIR "/components/good", TEST_DATA_DIR "/components/bad");
        QCOMPARE(log.count("has a bad entry"), 14);
        for (const char* file : {"f", "g"})
            QCOMPARE(sources.find(file).sha256, QByteArray(64, 'a'));
        QCOMPARE(sources.components("runner"), QStringList({"q", "r"}));
        QCOMPARE(recipes.names(), QStringList{"good"});
        QCOMPARE(recipes.find("good")->files(), QStringList{"g"});
    }

    void backups() {
        const QString bottle = m_home.path() + "/bottle";
        const QString dlls = bottle + "/drive_c/windows/system32/";
        const auto fill = [this](const QByteArray& content) {
            m_home.write("bottle/drive_c/windows/system32/a.dll", content);
            m_home.write("bottle/system.reg", content);
        };
        fill("old");
        QCOMPARE(BottleBackup::state(bottle), BottleBackup::State::None);
        QCOMPARE(BottleBackup::announce(bottle), QString());
        QVERIFY(QFile::exists(BottleBackup::pathOf(bottle) + "/journal.json"));  // what launches wait for
        QCOMPARE(BottleBackup::state(bottle), BottleBackup::State::Unfinished);
        QCOMPARE(BottleBackup::make(bottle, "id1", NotCancelled), QString());
        QCOMPARE(BottleBackup::idOf(bottle), QString("id1"));
        QVERIFY(!BottleBackup::announce(bottle).isEmpty());
        fill("new");
        m_home.write("bottle/drive_c/windows/system32/b.dll", "new");
        // As after a kill between the two renames and a start of the bottle.
        QVERIFY(QDir().mkpath(BottleBackup::pathOf(bottle) + "/failed-1/x"));
        for (int again = 0; again < 2; ++again) {
            QCOMPARE(BottleBackup::restore(bottle), QString());
            QCOMPARE(readFile(dlls + "a.dll") + readFile(bottle + "/system.reg"), QByteArray("oldold"));
            QVERIFY(!QFile::exists(dlls + "b.dll"));
        }
        QCOMPARE(BottleBackup::dismiss(bottle), QString());
        QCOMPARE(BottleBackup::state(bottle), BottleBackup::State::Unfinished);
    }

    void systemFiles() {
        const QString prefix = m_home.path() + "/prefix";
        const QString windows = prefix + "/drive_c/windows/";
        QByteArray pe(0x100, 0);
        pe.replace(0, 2, "MZ").replace(0x3c, 1, "\x80").replace(0x80, 6, QByteArray("PE\0\0\x64\x86", 6));
        const QString native = m_home.write("n64/x.dll", pe);
        const QString other = m_home.write("n32/x.dll", pe.replace(0x84, 2, QByteArray("\x4c\x01", 2)));
        const QString runner = m_home.write("runner/x.dll", "the runner's");
        QVERIFY(QDir().mkpath(windows + "syswow64") && QDir().mkpath(windows + "system32"));
        QVERIFY(QFile::link(runner, windows + "system32/x.dll"));
        QCOMPARE(PrefixFiles::putSystemFiles(prefix, {native, other}, false), QString());
        QCOMPARE(readFile(windows + "system32/x.dll"), readFile(native));
        QCOMPARE(readFile(windows + "syswow64/x.dll"), readFile(other));
        QCOMPARE(readFile(runner), QByteArray("the runner's"));
        // A directory that leads elsewhere is refused.
        QVERIFY(QDir(windows + "system32").removeRecursively());
        QVERIFY(QFile::link(m_home.path() + "/runner", windows + "system32"));
        QVERIFY(!PrefixFiles::putSystemFiles(prefix, {native, other}, false).isEmpty());
        QCOMPARE(readFile(runner), QByteArray("the runner's"));
    }
};

QTEST_GUILESS_MAIN(ComponentsTest)
#include "ComponentsTest.moc"
