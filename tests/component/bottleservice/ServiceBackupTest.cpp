#include <archive.h>
#include <archive_entry.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QDBusPendingCallWatcher>
#include <QDirIterator>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/Templates.h"
#include "support/Table.h"

namespace {

using TestSupport::readFile;

const char Id[] = "11111111-2222-3333-4444-555555555555";

/// What lies below a directory and is part of a backup: type, content, link and rights of each.
QMap<QString, QString> treeOf(const QString& root) {
    QMap<QString, QString> tree;
    QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QFileInfo info(walk.next());
        const QString path = info.filePath().mid(root.size() + 1);
        if (path.startsWith("logs") || path == "launch.json" || path == "wineserver" || path == "bottle.yml")
            continue;
        if (info.isSymLink())
            tree[path] = "-> " + QFile::symLinkTarget(info.filePath()).replace(root, "BOTTLE");
        else if (info.isDir())
            tree[path] = "directory";
        else
            tree[path] =
                QString("%1 %2 %3")
                    .arg(int(info.permissions() & 0xf000), 0, 16)
                    .arg(info.lastModified().toMSecsSinceEpoch())
                    .arg(QString(QCryptographicHash::hash(readFile(info.filePath()), QCryptographicHash::Md5)
                                     .toHex()));
    }
    return tree;
}

QByteArray attributesOf(const QString& bottle) {
    QByteArray value(16, 0);
    ::getxattr(QFile::encodeName(bottle + "/drive_c/App/hidden.ini").constData(), "user.DOSATTRIB",
               value.data(), size_t(value.size()));
    return value;
}

QString differenceOf(const QMap<QString, QString>& one, const QMap<QString, QString>& other) {
    QStringList lines;
    QStringList paths = one.keys() + other.keys();
    paths.removeDuplicates();
    for (const QString& path : paths) {
        if (one.value(path) != other.value(path))
            lines += path + ": " + one.value(path, "nothing") + " | " + other.value(path, "nothing");
    }
    return lines.join('\n');
}

struct Item {
    Item(const QByteArray& itsName = {}, const QByteArray& itsContent = {}, unsigned itsType = AE_IFREG,
         const QByteArray& itsLink = {})
        : name(itsName), content(itsContent), type(itsType), link(itsLink) {}
    QByteArray name, content;
    unsigned type;
    QByteArray link;
};

/// A tar archive in the compression of backups, with whatever a stranger could write.
void writeArchive(const QString& path, const QVector<Item>& items) {
    const BackupFile::Handle handle(archive_write_new());
    archive_write_set_format_gnutar(handle.get());
    archive_write_add_filter_zstd(handle.get());
    archive_write_open_filename(handle.get(), QFile::encodeName(path).constData());
    for (const Item& item : items) {
        const BackupFile::Entry entry(archive_entry_new());
        archive_entry_set_pathname(entry.get(), item.name.constData());
        archive_entry_set_filetype(entry.get(), item.type);
        archive_entry_set_perm(entry.get(), 0755);
        archive_entry_set_size(entry.get(), item.type == AE_IFREG ? item.content.size() : 0);
        if (item.type == AE_IFLNK)
            archive_entry_set_symlink(entry.get(), item.link.constData());
        else if (!item.link.isEmpty())
            archive_entry_set_hardlink(entry.get(), item.link.constData());
        archive_write_header(handle.get(), entry.get());
        archive_write_data(handle.get(), item.content.constData(), size_t(item.content.size()));
    }
    archive_write_close(handle.get());
}

}  // namespace

/// Backups of whole bottles: what comes back, and what must never come out of a file. A script stands for
/// Wine where none has to run.
class ServiceBackupTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;
    QString m_key;  ///< of the template

    QJsonObject copy(const QString& method, const QVariantList& arguments) const {
        return QJsonDocument::fromJson(
                   m_service->call(method, arguments, "Backup").arguments().value(0).toString().toUtf8())
            .object();
    }
    QString file(const QString& name = "b.backup") const { return m_service->home().path() + '/' + name; }
    QString bottle(const QString& name) const { return m_service->bottlePath(name); }

    /// Installs a script as the only Wine, with a finished template; another content is another build.
    void installStandIn(const QByteArray& build) {
        const QString program = m_service->write("runners/w/bin/wine", "#!/bin/sh\n# " + build, true);
        m_key = Templates::keyOf({"w", program, program});
        const QString original = "templates/" + m_key;
        const QByteArray registry =
            "WINE REGISTRY Version 2\n\n#arch=win64\n\n[Software\\\\Wine] 1\n\"Build\"=\"" + build + "\"\n";
        for (const char* name : {"/system.reg", "/user.reg"})
            m_service->write(original + name, registry);
        QVERIFY(QDir().mkpath(m_service->dataDir() + '/' + original + "/dosdevices"));
        QFile::link("../drive_c", m_service->dataDir() + '/' + original + "/dosdevices/c:");
        for (const QByteArray& name : {QByteArray("kernel32"), build})
            m_service->write(original + "/drive_c/windows/system32/" + name + ".dll", build);
        m_service->write(original + "/drive_c/users/me/a", "");
        QVERIFY(QFile::link(m_service->home().path(),
                            m_service->dataDir() + '/' + original + "/drive_c/users/me/Documents"));
    }
    void startWithStandIn() {
        m_service.reset();
        m_service = std::make_unique<ServiceFixture>();
        m_service->variables["PATH"] = "/nowhere";
        installStandIn("one");
        QVERIFY(m_service->start());
    }
    /// A bottle with a file of so many bytes that cannot be compressed.
    void makeBottle(const QString& name, int bytes) {
        m_service->write("bottles/" + name + "/bottle.yml",
                         "Runner: w\nTemplate: " + m_key.toLatin1() + "\nExternal_Programs:\n  " + Id +
                             ":\n    id: " + Id + "\n    name: App\n    path: C:\\App\\a.exe\n");
        m_service->write("bottles/" + name + "/drive_c/App/a.exe", "MZ");
        m_service->write("bottles/" + name + "/icons/x.png", "icon");
        QVERIFY(QDir().mkpath(bottle(name) + "/dosdevices"));
        QFile::link("../drive_c", bottle(name) + "/dosdevices/c:");
        for (const char* file : {"/system.reg", "/user.reg", "/drive_c/windows/system32/kernel32.dll",
                                 "/drive_c/windows/system32/one.dll"})
            m_service->write("bottles/" + name + file,
                             readFile(m_service->dataDir() + "/templates/" + m_key + file));
        QByteArray data(bytes, 0);
        QRandomGenerator random(1);
        std::generate(data.begin(), data.end(), [&random] { return char(random.generate()); });
        m_service->write("bottles/" + name + "/drive_c/App/data.bin", data);
    }
    QStringList leftovers() const {
        QStringList all = m_service->unfinished("bottles");
        for (const QString& place : {m_service->home().path(), m_service->dataDir()})
            all += QDir(place).entryList({".*cellarix-new", ".backing-up*"}, QDir::Files | QDir::Hidden);
        return all;
    }

private Q_SLOTS:
    /// Everything comes back, also what only Linux or only Windows knows, and the programs run.
    void roundTrip() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        m_service.reset();
        m_service = std::make_unique<ServiceFixture>();
        QVERIFY(m_service->start());
        const QString name = QString::fromUtf8("游戏 100% \"a\"");
        QVERIFY(
            QJsonDocument::fromJson(m_service->text("createBottles", {name, ""}).toUtf8())["ok"].toBool());
        const QString root = bottle(name);
        const auto write = [&](const QString& path, const QByteArray& text) {
            return m_service->write("bottles/" + name + '/' + path, text, true);
        };
        const QString program = write(QString::fromUtf8("drive_c/App/主程序.exe"), "MZ");
        const QString hidden = write("drive_c/App/hidden.ini", "[x]");
        QFile::setPermissions(hidden, QFile::ReadOwner);
        write("drive_c/App/" + QString(200, 'n') + "/" + QString(200, 'n'), "long");
        write("drive_c/windows/system32/comctl32.dll", "an installer's");
        write("icons/" + QString(Id) + ".png", "icon");
        const QByteArray odd = "/drive_c/App/\xc4\xe3";  // no UTF-8
        QVERIFY(::mkdir((QFile::encodeName(root) + odd).constData(), 0755) == 0);
        QVERIFY(QFile::link("../App", root + "/drive_c/App/inner"));
        QVERIFY(QFile::link(root + "/drive_c/App", root + "/drive_c/absolute"));
        QVERIFY(QFile::link("/etc", root + "/drive_c/App/outer"));
        const QString record = R"({"id":"%1","path":"C:\\App\\a.exe","name":"n","icon":"%2/icons/%1.png"})";
        const QString quoted = QString(root).replace('"', "\\\"");
        QCOMPARE(m_service->error("updateExternalProgram", {name, record.arg(Id, quoted)}), QString());
        const QString command =
            "cmd.exe /c attrib +h C:\\App\\hidden.ini & reg add HKCU\\Mine /v k /d v & echo ready";
        QCOMPARE(m_service->error("run_command", {name, command}), QString());
        const QString log = "/logs/command-cmd.exe.txt";
        QTRY_VERIFY_WITH_TIMEOUT(readFile(root + log).contains("ready"), 60000);
        QProcess running;
        QProcessEnvironment environment = m_service->environment();
        environment.insert("WINEPREFIX", root);
        environment.insert("LC_ALL", "C.UTF-8");
        running.setProcessEnvironment(environment);
        running.start("wine", {"cmd.exe", "/c", "echo ready & set /p x="});
        QVERIFY(running.waitForReadyRead(60000));
        QCOMPARE(copy("exportBottle", {name, file()})["busy"].toArray(), QJsonArray{"cmd.exe"});
        QCOMPARE(running.state(), QProcess::Running);
        running.write("\n");
        QVERIFY(running.waitForFinished(60000));
        QCOMPARE(m_service->error("killWineServer", {name}), QString());
        QVERIFY(readFile(root + "/user.reg").contains("[Mine]"));
        auto before = treeOf(root);

        const QJsonObject exported = copy("exportBottle", {name, file()});
        QCOMPARE(int(QFileInfo(file()).permissions() & (QFile::ReadGroup | QFile::ReadOther)), 0);
        QVERIFY2(exported["ok"].toBool(), QJsonDocument(exported).toJson().constData());
        QCOMPARE(exported["leftOut"].toArray(), QJsonArray{"drive_c/App/outer -> /etc"});
        QCOMPARE(exported["bytes"].toDouble(), double(QFileInfo(file()).size()));
        QVERIFY(exported["bytes"].toDouble() < 3e6);  // nothing of Wine's own
        QCOMPARE(copy("describeBackup", {file()})["programs"].toArray(), QJsonArray{"n"});
        m_service->signalLog.clear();
        const QJsonObject imported = copy("importBottle", {file(), ""});
        QVERIFY2(imported["ok"].toBool(), QJsonDocument(imported).toJson().constData());
        const QString second = imported["bottle"].toString();
        QCOMPARE(second, name + " (2)");
        QTRY_COMPARE(m_service->signalLog.filter("program_added(" + second).size(), 1);
        before.remove("drive_c/App/outer");
        auto after = treeOf(bottle(second));
        // The same program cannot be in two bottles.
        const QJsonObject programs = m_service->json("get", {second})["External_Programs"].toObject();
        QVERIFY(programs.size() == 1 && !programs.contains(Id));
        const QString id = programs.keys().first();
        QCOMPARE(programs[id].toObject()["icon"].toString(), bottle(second) + "/icons/" + id + ".png");
        after["icons/" + QString(Id) + ".png"] = after.take("icons/" + id + ".png");
        before["drive_c/absolute"] = after["drive_c/absolute"];
        QCOMPARE(QFile::symLinkTarget(bottle(second) + "/drive_c/absolute"), bottle(second) + "/drive_c/App");
        QCOMPARE(differenceOf(before, after), QString());
        // Qt could not remove them.
        for (const QString& made : {root, bottle(second)})
            QCOMPARE(::rmdir((QFile::encodeName(made) + odd).constData()), 0);
        QCOMPARE(attributesOf(bottle(second)), attributesOf(root));
        QCOMPARE(m_service->error("run_command", {second, "cmd.exe /c reg query HKCU\\Mine"}), QString());
        QTRY_VERIFY_WITH_TIMEOUT(readFile(bottle(second) + log).contains("REG_SZ"), 60000);
        QCOMPARE(leftovers(), QStringList());
    }

    void strangersFiles_data() {
        // One more entry of the list; what the archive has for it: name, content, type, link.
        const TestSupport::Table<QByteArray, QByteArray, QByteArray, int, QByteArray, QString> row(
            "entry", "name", "content", "type", "link", "fault");
        const int file = AE_IFREG;
        const QString outside = "leads out of the bottle";
        row("nothing", "", "", "", file, "", "");
        row("file", R"({"path":"drive_c/a","size":1})", "bottle/drive_c/a", "x", file, "", "");
        row("link", R"({"path":"drive_c/a","link":"../drive_c"})", "bottle/drive_c/a", "", AE_IFLNK,
            "../drive_c", "");
        row("climbs out", R"({"path":"../a","size":1})", "bottle/../a", "x", file, "", outside);
        row("climbs out later", R"({"path":"drive_c/../../a","size":1})", "bottle/a", "x", file, "", outside);
        row("climbs out encoded", R"({"path":"%2e%2e/a","size":1})", "bottle/../a", "x", file, "", outside);
        row("absolute", R"({"path":"/tmp/a","size":1})", "bottle//tmp/a", "x", file, "", outside);
        row("NUL", R"({"path":"drive_c/a%00b","size":1})", "bottle/drive_c/a", "x", file, "", outside);
        row("link to /etc", R"({"path":"drive_c/a","link":"/etc"})", "bottle/drive_c/a", "", AE_IFLNK, "/etc",
            outside);
        row("link climbs out", R"({"path":"drive_c/a","link":"../../x"})", "bottle/drive_c/a", "", AE_IFLNK,
            "../../x", outside);
        row("link over link", R"({"path":"drive_c/a","link":"b/../../.."})", "bottle/drive_c/a", "", AE_IFLNK,
            "b/../../..", outside);
        row("link over a drive", R"({"path":"drive_c/a","link":"../dosdevices/z:/home"})", "bottle/drive_c/a",
            "", AE_IFLNK, "../dosdevices/z:/home", outside);
        row("link over a drive of another case", R"({"path":"drive_c/a","link":"../DOSDEVICES/Z:"})",
            "bottle/drive_c/a", "", AE_IFLNK, "../DOSDEVICES/Z:", outside);
        row("link over a link over a drive", R"({"path":"drive_c/a","link":"L/../dosdevices/z:"})",
            "bottle/drive_c/a", "", AE_IFLNK, "L/../dosdevices/z:", outside);
        row("link over a listed link", R"({"path":"drive_c/a","link":"d/z:"})", "bottle/drive_c/a", "",
            AE_IFLNK, "d/z:", outside);
        row("link into a folder of the user", R"({"path":"drive_c/a","link":"users/me/Documents/x"})",
            "bottle/drive_c/a", "", AE_IFLNK, "users/me/Documents/x", outside);
        row("link to itself", R"({"path":"drive_c/a","link":"A"})", "bottle/drive_c/a", "", AE_IFLNK, "A",
            outside);
        row("other link than listed", R"({"path":"drive_c/a","link":"b"})", "bottle/drive_c/a", "", AE_IFLNK,
            "/etc", "not those of its list");
        row("below a link", R"({"path":"drive_c/l/a","size":1})", "bottle/drive_c/l/a", "x", file, "",
            "has no directory");
        row("twice", R"({"path":"bottle.yml","size":1})", "bottle/bottle.yml", "x", file, "", "twice");
        row("link of the same name but case", R"({"path":"Drive_C","link":"drive_c"})", "bottle/Drive_C", "",
            AE_IFLNK, "drive_c", "case alone");
        row("file of the same name but case", R"({"path":"DRIVE_C","size":1})", "bottle/DRIVE_C", "x", file,
            "", "");
        row("the service's own", R"({"path":"launch.json","size":1})", "bottle/launch.json", "x", file, "",
            "only the service");
        row("journal of an installation", R"({"path":".before-install","type":"directory"})",
            "bottle/.before-install", "", AE_IFDIR, "", "only the service");
        row("pipe", R"({"path":"drive_c/a","size":0})", "bottle/drive_c/a", "", AE_IFIFO, "",
            "not those of its list");
        row("device", R"({"path":"drive_c/a","size":0})", "bottle/drive_c/a", "", AE_IFBLK, "",
            "not those of its list");
        row("hard link", R"({"path":"drive_c/a","size":0})", "bottle/drive_c/a", "", file, "/etc/passwd",
            "not those of its list");
        row("larger than listed", R"({"path":"drive_c/a","size":1})", "bottle/drive_c/a",
            QByteArray(1 << 20, 0), file, "", "not those of its list");
        row("enormous", R"({"path":"drive_c/a","size":9007199254740000})", "bottle/drive_c/a", "x", file, "",
            "not enough room");
        row("negative", R"({"path":"drive_c/a","size":-1})", "bottle/drive_c/a", "x", file, "", "no size");
        row("more holes than bytes", R"({"path":"drive_c/a","size":1,"holes":2})", "bottle/drive_c/a", "x",
            file, "", "no size");
        row("another name", R"({"path":"drive_c/a","size":1})", "bottle/drive_c/b", "x", file, "",
            "not those of its list");
        row("missing", R"({"path":"drive_c/a","size":1})", "", "", file, "", "not those of its list");
        row("not listed", "", "bottle/drive_c/a", "x", file, "", "its end is missing");
        row("wrong checksum", R"({"path":"drive_c/wrong","size":1})", "bottle/drive_c/wrong", "x", file, "",
            "another checksum");
    }
    void strangersFiles() {
        QFETCH(QByteArray, entry);
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, content);
        QFETCH(int, type);
        QFETCH(QByteArray, link);
        QFETCH(QString, fault);
        if (!m_service || !m_service->variables.contains("PATH"))
            startWithStandIn();
        const QByteArray settings = "Runner: w\n";
        const QByteArray list =
            R"({"format":1,"program":"cellarix","name":"s","entries":[{"path":"bottle.yml","size":)" +
            QByteArray::number(settings.size()) +
            R"(},{"path":"drive_c","type":"directory"},{"path":"drive_c/windows","type":"directory"},)" +
            R"({"path":"drive_c/windows/system32","type":"directory"},{"path":"dosdevices","type":"directory"},)" +
            R"({"path":"system.reg","size":0},{"path":"user.reg","size":0},)" +
            R"({"path":"drive_c/l","link":"../drive_c"},{"path":"drive_c/d","link":"../dosdevices"})" +
            (entry.isEmpty() ? "" : "," + entry) + R"(],"standardLinks":["dosdevices/c:"],)" +
            R"("wineFiles":["drive_c/windows/system32/kernel32.dll"]})";
        const auto line = [](const QByteArray& of, const QByteArray& text) {
            BackupFile::Checksum checksum;
            checksum.add(text.constData(), size_t(text.size()));
            return BackupFile::checksumLine(checksum.hex(), of);
        };
        QVector<Item> items{{BackupFile::ListEntry, list},
                            {"bottle/bottle.yml", settings},
                            {"bottle/drive_c", {}, AE_IFDIR},
                            {"bottle/drive_c/windows", {}, AE_IFDIR},
                            {"bottle/drive_c/windows/system32", {}, AE_IFDIR},
                            {"bottle/dosdevices", {}, AE_IFDIR},
                            {"bottle/system.reg", {}},
                            {"bottle/user.reg", {}},
                            {"bottle/drive_c/l", {}, AE_IFLNK, "../drive_c"},
                            {"bottle/drive_c/d", {}, AE_IFLNK, "../dosdevices"}};
        QByteArray sums =
            line("bottle/bottle.yml", settings) + line("bottle/system.reg", {}) + line("bottle/user.reg", {});
        if (!name.isEmpty())
            items += Item{name, content, unsigned(type), link};
        if (!name.isEmpty() && type == AE_IFREG && link.isEmpty() && !name.endsWith("wrong"))
            sums += line(name, content);
        writeArchive(file(), items << Item{BackupFile::ChecksumsEntry, sums});
        const QJsonObject result = copy("importBottle", {file(), ""});
        QCOMPARE(result["ok"].toBool(), fault.isEmpty());
        const QByteArray reasons =
            QJsonDocument(result["reasons"].toArray()).toJson() + result["error"].toString().toUtf8();
        QVERIFY2(QString(reasons).contains(fault), reasons.constData());
        QCOMPARE(QFileInfo::exists(bottle("s")), fault.isEmpty());
        QTRY_COMPARE(leftovers(), QStringList());
        if (fault.isEmpty())
            QCOMPARE(m_service->error("delete", {"s"}), QString());
    }

    /// The file of a complete backup, cut short or with a changed byte, is refused or gives the same bottle.
    void damagedFiles() {
        startWithStandIn();
        makeBottle("b", 300000);
        QVERIFY(copy("exportBottle", {"b", file()})["ok"].toBool());
        const auto whole = treeOf(bottle("b"));
        const QByteArray content = readFile(file());
        QRandomGenerator random(3);
        int refused = 0;
        for (int round = 0; round < 40; ++round) {
            QByteArray damaged = content;
            const int place = random.bounded(content.size());
            if (round % 2)
                damaged.truncate(place);
            else
                damaged[place] = char(damaged[place] ^ (1 << random.bounded(8)));
            m_service->home().write("damaged", damaged);
            const QJsonObject result = copy("importBottle", {file("damaged"), "d"});
            refused += !result["ok"].toBool();
            QCOMPARE(QFileInfo::exists(bottle("d")), result["ok"].toBool());
            if (result["ok"].toBool()) {
                QCOMPARE(differenceOf(whole, treeOf(bottle("d"))), QString());
                QCOMPARE(m_service->error("delete", {"d"}), QString());
            }
        }
        QVERIFY2(refused >= 38, qPrintable(QString::number(refused)));
        QTRY_COMPARE(leftovers(), QStringList());
    }

    /// Another machine: another user, home and Wine.
    void otherMachine() {
        startWithStandIn();
        makeBottle("b", 10);
        m_service->write("bottles/b/drive_c/windows/system32/one.dll", "an installer's");
        const QString root = m_service->dataDir() + "/bottles/b/drive_c/users/";
        QVERIFY(QDir().mkpath(root + "old/AppData"));
        QVERIFY(QFile::link("/home/old", root + "old/Documents"));
        // What a restoration would refuse is left out.
        QVERIFY(QFile::link("App", bottle("b") + "/drive_c/app"));
        QVERIFY(QFile::link("users/old/Documents", bottle("b") + "/drive_c/home"));
        QVERIFY(QFile::link("home", bottle("b") + "/drive_c/indirect"));
        QFile sparse(bottle("b") + "/drive_c/App/sparse.bin");
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(100000001) && sparse.seek(50000000));
        QVERIFY(sparse.write("middle") == 6);
        sparse.close();
        const QJsonObject exported = copy("exportBottle", {"b", file()});
        QCOMPARE(exported["leftOut"].toArray().size(), 3);
        QCOMPARE(m_service->error("delete", {"b"}), QString());
        installStandIn("two");
        const QJsonObject result = copy("importBottle", {file(), "c"});
        QVERIFY2(result["ok"].toBool(), qPrintable(result["error"].toString()));
        QVERIFY(result["otherWine"].toBool());
        struct stat status = {};
        const QByteArray restored = QFile::encodeName(bottle("c") + "/drive_c/App/sparse.bin");
        QVERIFY(::stat(restored.constData(), &status) == 0 && status.st_blocks * 512 < 1000000);
        const QByteArray content = readFile(QFile::decodeName(restored));
        QVERIFY(content.size() == 100000001 && content.count('\0') == content.size() - 6);
        QCOMPARE(content.mid(50000000, 6), QByteArray("middle"));
        const QString system = bottle("c") + "/drive_c/windows/system32/";
        QCOMPARE(readFile(system + "kernel32.dll"), QByteArray("two"));
        QCOMPARE(readFile(system + "two.dll"), QByteArray("two"));
        QCOMPARE(readFile(system + "one.dll"), QByteArray("an installer's"));
        QVERIFY(readFile(bottle("c") + "/system.reg").contains("\"Build\"=\"two\""));
        QCOMPARE(m_service->json("get", {"c"})["External_Programs"][Id]["path"].toString(), "C:\\App\\a.exe");
        const QString users = bottle("c") + "/drive_c/users/";
        QVERIFY(QFileInfo(users + "me/AppData").isDir() && !QFileInfo(users + "me").isSymLink());
        QCOMPARE(QFile::symLinkTarget(users + "old"), users + "me");
        QCOMPARE(QFile::symLinkTarget(users + "me/Documents"), m_service->home().path());
    }

    /// Only settings that a caller could make come back, and none makes the service act.
    void strangersSettings() {
        startWithStandIn();
        makeBottle("b", 10);
        m_service->write(
            "bottles/b/bottle.yml",
            "Runner: w\nTemplate: " + m_key.toLatin1() +
                "\nPending_Registry: {text: x}\nLast_Install: x\nUnknown: 1\nDXVK: ../x\n"
                "Windows: win7\nParameters: {custom_dpi: 120, renderer: x, other: 1}\n"
                "DLL_Overrides: {d3d9: 'n,b', ../x: n, a: x}\nInstalled_Dependencies: [a, ../b]\n"
                "External_Programs:\n  " +
                Id +
                ": {path: 'C:\\a.exe', envs: {LD_PRELOAD: x, A: b}}\n"
                "  x: {name: without a path}\n");
        QVERIFY(copy("exportBottle", {"b", file()})["ok"].toBool());
        const QJsonObject imported = copy("importBottle", {file(), "c"});
        QCOMPARE(imported["programs"].toInt(), 1);
        QCOMPARE(imported["variables"].toArray(), QJsonArray{"LD_PRELOAD"});
        const QByteArray text = readFile(bottle("c") + "/bottle.yml");
        for (const char* dropped : {"Pending", "Last_Install", "Unknown", "..", "LD_PRELOAD", "other"})
            QVERIFY2(!text.contains(dropped), text.constData());
        const QJsonObject record = m_service->json("get", {"c"}).object();
        QCOMPARE(record["Windows"].toString(), QString("win7"));
        QCOMPARE(record["Parameters"]["custom_dpi"].toInt(), 120);
        QCOMPARE(record["DLL_Overrides"].toObject(), QJsonObject({{"d3d9", "n,b"}}));
        const QJsonObject programs = record["External_Programs"].toObject();
        QCOMPARE(programs[programs.keys().first()].toObject()["envs"].toObject(), QJsonObject({{"A", "b"}}));
        // Without its Wine's files a bottle would run nothing.
        QVERIFY(QFile::remove(bottle("b") + "/user.reg"));
        QVERIFY(copy("exportBottle", {"b", file()})["ok"].toBool());
        QVERIFY(copy("importBottle", {file(), "d"})["error"].toString().contains("user.reg is missing"));
        // A public bottle where "public" is none of the service's.
        QVERIFY(QFile::link("/tmp", m_service->dataDir() + "/bottles/public"));
        QVERIFY(copy("importBottle", {file(), "public/x"})["error"].toString().contains("no free name"));
    }

    void refusals() {
        startWithStandIn();
        makeBottle("b", 10);
        const auto code = [this](const QString& method, const QVariantList& arguments) {
            const QJsonObject result = copy(method, arguments);
            return result["reasons"][0].toObject()["code"].toString();
        };
        QVERIFY(QFile::link("/etc/passwd", file("link")));
        QCOMPARE(code("exportBottle", {"b", file("link")}), QString("no-ordinary-file"));
        QCOMPARE(code("exportBottle", {"b", "relative"}), QString("no-ordinary-file"));
        QCOMPARE(code("exportBottle", {"b", "/proc/none/x"}), QString("cannot-write"));
        QCOMPARE(code("exportBottle", {"b", bottle("b") + "/drive_c/x"}), QString("target-in-bottle"));
        // A file that Wine has is lacking; one that no Wine here knows is only told.
        const QString windows = bottle("b") + "/drive_c/windows/";
        QVERIFY(QFile::link("/gone/a.dll", windows + "a.dll"));
        QCOMPARE(copy("exportBottle", {"b", file()})["leftOut"].toArray().size(), 1);
        QVERIFY(QFile::remove(windows + "system32/one.dll"));
        QVERIFY(QFile::link("/gone/one.dll", windows + "system32/one.dll"));
        QCOMPARE(code("exportBottle", {"b", file()}), QString("wine-file-gone"));
        QCOMPARE(code("importBottle", {file("none"), ""}), QString("no-ordinary-file"));
        QCOMPARE(code("importBottle", {"/etc/passwd", ""}), QString("bad-backup"));
        QCOMPARE(code("describeBackup", {"/etc/passwd"}), QString("bad-backup"));
        QCOMPARE(m_service->call("exportBottle", {"none", file()}, "Backup").errorName(),
                 QString("com.lumora.Error.NoSuchBottle"));
        QCOMPARE(m_service->call("importBottle", {file(), "../x"}, "Backup").errorName(),
                 QString("com.lumora.Error.InvalidArgs"));
        QCOMPARE(leftovers(), QStringList());
    }

    /// A bottle that changes while it is read gives no backup, and the older one stays.
    void changedMeanwhile() {
        startWithStandIn();
        makeBottle("b", 80000000);
        m_service->home().write("b.backup", "older");
        const QString program = bottle("b") + "/drive_c/App/a.exe";
        QDBusPendingCallWatcher call(m_service->callLater("exportBottle", {"b", file()}, "Backup"));
        QTRY_VERIFY(!leftovers().isEmpty());
        QFile changed(program);
        QVERIFY(changed.open(QIODevice::Append) && changed.write("x") == 1);
        changed.close();
        QTRY_VERIFY_WITH_TIMEOUT(call.isFinished(), 60000);
        const QString result = call.reply().arguments().value(0).toString();
        QVERIFY2(result.contains("bottle-changed"), qPrintable(result));
        QCOMPARE(readFile(file()), QByteArray("older"));
        QCOMPARE(leftovers(), QStringList());
    }

    void cancelledAndKilled_data() {
        const TestSupport::Table<bool, bool> row("isImport", "isKill");
        row("export cancelled", false, false);
        row("export killed", false, true);
        row("import cancelled", true, false);
        row("import killed", true, true);
    }
    void cancelledAndKilled() {
        QFETCH(bool, isImport);
        QFETCH(bool, isKill);
        startWithStandIn();
        makeBottle("b", 60000000);
        if (isImport)
            QVERIFY(copy("exportBottle", {"b", file()})["ok"].toBool());
        QRandomGenerator random(isKill);
        for (int round = 0; round < 5; ++round) {
            QDBusPendingCallWatcher call(isImport
                                             ? m_service->callLater("importBottle", {file(), "c"}, "Backup")
                                             : m_service->callLater("exportBottle", {"b", file()}, "Backup"));
            QTest::qWait(random.bounded(120));  // any moment
            if (isKill) {
                m_service->kill();
                QVERIFY(m_service->start());
            } else {
                copy("cancelBottleCopy", {file()});
                QTRY_VERIFY_WITH_TIMEOUT(call.isFinished(), 30000);
            }
            QTRY_COMPARE(leftovers(), QStringList());
            // All or nothing.
            if (!isImport && QFileInfo::exists(file()))
                QVERIFY(copy("describeBackup", {file()})["ok"].toBool());
            if (QFileInfo::exists(bottle("c"))) {
                QCOMPARE(differenceOf(treeOf(bottle("b")), treeOf(bottle("c"))), QString());
                QCOMPARE(m_service->error("delete", {"c"}), QString());
            }
        }
    }

    void fullDisk() {
        startWithStandIn();
        makeBottle("b", 12000000);
        const QString disk = file("disk");
        QVERIFY(QDir().mkpath(disk));
        if (::geteuid() != 0 ||
            !TestSupport::runProcess("mount", {"-t", "tmpfs", "-o", "size=8m", "tmpfs", disk}).ok())
            QSKIP("cannot-mount-a-small-file-system-here");
        const QJsonObject exported = copy("exportBottle", {"b", disk + "/b"});
        const QStringList left = QDir(disk).entryList(QDir::Files | QDir::Hidden);
        TestSupport::runProcess("umount", {"-l", disk});
        QCOMPARE(exported["reasons"][0].toObject()["code"].toString(), QString("disk-full"));
        QCOMPARE(left, QStringList());
        QVERIFY(copy("exportBottle", {"b", file()})["ok"].toBool());
        const QString bottles = m_service->dataDir() + "/bottles";
        const bool isMounted =
            TestSupport::runProcess("mount", {"-t", "tmpfs", "-o", "size=8m", "tmpfs", bottles}).ok();
        const QJsonObject imported = copy("importBottle", {file(), ""});
        const QStringList unfinished = m_service->unfinished("bottles");
        TestSupport::runProcess("umount", {"-l", bottles});
        QVERIFY(isMounted);
        QCOMPARE(imported["reasons"][0].toObject()["code"].toString(), QString("too-little-room"));
        QCOMPARE(unfinished, QStringList());
    }
};

QTEST_GUILESS_MAIN(ServiceBackupTest)
#include "ServiceBackupTest.moc"
