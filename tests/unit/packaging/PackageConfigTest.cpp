#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QtTest>
#include <optional>

#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageDirectories.h"
#include "packaging/config/PackageFiles.h"
#include "packaging/config/PackageInfo.h"
#include "packaging/contents/PackageSummary.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::Table;

namespace {

const char Inside[] = "0c1d2e3f-1111-4222-8333-444455556666";
const char Outside[] = "0c1d2e3f-1111-4222-8333-444455556667";

QString same(const QString& path) {
    return path;
}

/// What the rule says, by trying every directory: the widest one that can be reached from the chosen one,
/// where a step leads to the directory of a program in the present one.
QString widestByTrying(const PackageEntries& entries, const QString& chosen) {
    QStringList reached{chosen};
    for (int i = 0; i < reached.size(); ++i) {
        for (const PackageEntry& entry : entries) {
            const bool isStep = !entry.onlyCopyExe && !entry.dirToPackage.isEmpty() &&
                                (entry.path + '/').startsWith(reached[i] + '/') &&
                                (reached[i] + '/').startsWith(entry.dirToPackage + '/');
            if (isStep && !reached.contains(entry.dirToPackage))
                reached += entry.dirToPackage;
        }
    }
    return *std::min_element(reached.begin(), reached.end(),
                             [](const QString& a, const QString& b) { return a.size() < b.size(); });
}

bool isSaved(PackageChecker* checker) {
    std::optional<bool> saved;
    checker->save(checker, [&saved](bool isWritten) { saved = isWritten; });
    return QTest::qWaitFor([&saved] { return saved.has_value(); }) && *saved;
}

QString randomPath(QRandomGenerator* random, int depth) {
    QString path = "/r/s";
    for (int i = 0; i < depth; ++i)
        path += QString("/%1").arg(QChar('a' + random->bounded(2)));
    return path;
}

}  // namespace

class PackageConfigTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesAndVersions_data();
    void namesAndVersions();
    void infoIsReadBackAndDamageIsNot();
    void directoriesMerge();
    void mergedDirectoriesAreThoseOfTheSlowModel();
    void filesMoveWithTheirDirectory_data();
    void filesMoveWithTheirDirectory();
    void checkerKeepsWhatTheBottleHas();
};

void PackageConfigTest::namesAndVersions_data() {
    const Table<bool, QString, QString> row("isVersion", "text", "error");
    const QString name = "Your input is not a valid package name";
    const QString version = "Your input is not a valid package version";
    row("one character", false, "A", "At least 2 characters");
    row("plain", false, "com.example.lumora", "");
    row("upper case", false, "Com.example", name);
    row("no dot", false, "wechat", "");
    row("two dots", false, "com..example", name);
    row("line end", false, "com.example\n", name);
    row("version", true, "3.9.7lumora9", "");
    row("upper case in a version", true, "3.9A", "");
    row("letter first", true, "v1", version);
    row("dash", true, "1.0-1", version);
    row("version with a line end", true, "1.0\n", version);
}

void PackageConfigTest::namesAndVersions() {
    QFETCH(bool, isVersion);
    QFETCH(QString, text);
    QTEST(isVersion ? PackageInfo::versionError(text) : PackageInfo::packageNameError(text), "error");
}

void PackageConfigTest::infoIsReadBackAndDamageIsNot() {
    PackageInfo named;
    named.packageName = QString(200, 'a');
    named.version = QString(46, '1');
    QCOMPARE(named.fileNameError(), QString());  // 255 bytes
    named.version += '1';
    QVERIFY(!named.fileNameError().isEmpty());
    const QByteArray text =
        "{\n    \"appname\": \"A\",\n    \"arch\": [\n        \"arm64\"\n    ],\n    \"category\": "
        "\"Game\",\n"
        "    \"pkgdesc\": \"D\",\n    \"pkgname\": \"a.b\",\n    \"pkgversion\": \"1\"\n}\n";
    const PackageInfo info = PackageInfo::fromJson(QJsonDocument::fromJson(text).object());
    QCOMPARE(QJsonDocument(info.toJson()).toJson(), text);
    const PackageInfo damaged = PackageInfo::fromJson({{"arch", QJsonArray{"mips", 7}}, {"category", "Spy"}});
    QCOMPARE(damaged.architectures, QStringList({"amd64", "arm64"}));
    QCOMPARE(damaged.category, QString());
    QVERIFY(!PackageSummary::fromJson("[1]"));
    const auto summary = PackageSummary::fromJson(
        R"({"bytes":1e300,"folders":[{"bytes":-1},7],"leftOut":[{"entries":2},{"entries":3}]})");
    QCOMPARE(summary->all.bytes + summary->folders[0].bytes, 0);
    QCOMPARE(summary->folders.size() + summary->leftOutEntries(), 7);
}

void PackageConfigTest::directoriesMerge() {
    PackageEntries entries;
    entries["1"].path = "/g/Suite/bin/tool/a.exe";
    entries["2"].path = "/g/Suite/b.exe";
    entries["3"].path = "/g/Suite2/c.exe";
    const auto assign = [&](const QString& id, const QString& directory) {
        return PackageDirectories::assign(&entries, id, directory, "/bottle", same);
    };
    QCOMPARE(assign("1", "/g/Suite"), QStringList());  // too near to the root
    QCOMPARE(assign("nobody", "/g/Suite/bin"), QStringList());
    QCOMPARE(assign("1", "/g/Suite/bin"), QStringList("1"));
    QCOMPARE(assign("1", "/g/Suite/bin/"), QStringList());
    QCOMPARE(assign("2", "/elsewhere/x/y"), QStringList("2"));  // not in it: taken as it is
    QCOMPARE(entries["2"].pathPackaged, entries["2"].path);
    entries["1"].onlyCopyExe = true;
    QCOMPARE(assign("1", "/g/Suite/bin/tool"), QStringList("1"));
    QVERIFY(!entries["1"].onlyCopyExe);
}

void PackageConfigTest::mergedDirectoriesAreThoseOfTheSlowModel() {
    TestSupport::LogCapture quiet;
    QRandomGenerator random(7);
    for (int round = 0; round < 2000; ++round) {
        PackageEntries entries;
        for (int i = 0; i < 5; ++i) {
            PackageEntry& entry = entries[QString::number(i)];
            entry.path = randomPath(&random, 1 + random.bounded(4)) + "/x.exe";
            if (random.bounded(3) > 0)
                entry.dirToPackage = entry.path.section('/', 0, 2 + random.bounded(4)).remove("/x.exe");
            entry.onlyCopyExe = random.bounded(4) == 0;
        }
        const QString id = QString::number(random.bounded(5));
        const QString directory = randomPath(&random, 1 + random.bounded(3));
        PackageEntries expected = entries;
        expected[id].onlyCopyExe = false;
        if (!(expected[id].path + '/').startsWith(directory + '/')) {
            expected[id].dirToPackage = directory;
        } else {
            const QString merged = widestByTrying(expected, directory);
            for (PackageEntry& entry : expected) {
                if (!entry.onlyCopyExe && (entry.path + '/').startsWith(merged + '/'))
                    entry.dirToPackage = merged;
            }
        }
        const QStringList changed = PackageDirectories::assign(&entries, id, directory, "/bottle", same);
        for (const QString& key : entries.keys()) {
            QCOMPARE(entries[key].dirToPackage, expected[key].dirToPackage);
            QCOMPARE(entries[key].onlyCopyExe, expected[key].onlyCopyExe);
        }
        QVERIFY(changed.size() == QSet<QString>(changed.begin(), changed.end()).size());
    }
}

void PackageConfigTest::filesMoveWithTheirDirectory_data() {
    const Table<QString, QString, bool, QString> row("path", "directory", "isAlone", "packaged");
    row("with a directory", "/g/Game/bin/a.exe", "/g/Game", false, "/bottle/drive_c/Game/bin/a.exe");
    row("alone", "/g/Game/a.b.exe", "/g/Game", true, "/bottle/drive_c/a.b/a.b.exe");
    row("no directory", "/g/a.exe", "", false, "/bottle/drive_c/a/a.exe");
    row("another case", "/g/game/a.exe", "/g/Game", false, "/g/game/a.exe");
    row("a name that begins alike", "/g/Game2/a.exe", "/g/Game", false, "/g/Game2/a.exe");
}

void PackageConfigTest::filesMoveWithTheirDirectory() {
    QFETCH(QString, path);
    QFETCH(QString, directory);
    QFETCH(bool, isAlone);
    PackageEntry entry;
    entry.path = path;
    entry.dirToPackage = directory;
    entry.onlyCopyExe = isAlone;
    QTEST(PackageDirectories::pathPackaged(entry, "/bottle", same), "packaged");
}

void PackageConfigTest::checkerKeepsWhatTheBottleHas() {
    QTemporaryDir home;
    const QString bottle = home.filePath("bottle");
    const QString outer = home.filePath("games/Suite");
    QVERIFY(QDir().mkpath(bottle + "/drive_c/App") && QDir().mkpath(outer + "/bin"));
    for (const QString& path : {bottle + "/drive_c/App/a.exe", outer + "/bin/b.exe"})
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    QVERIFY(QDir().mkpath(bottle + "/dosdevices") && QFile::link("../drive_c", bottle + "/dosdevices/c:"));
    const QJsonObject record{
        {"Path", bottle},
        {"External_Programs",
         QJsonObject{
             {Inside, QJsonObject{{"name", "A"}, {"path", "C:\\App\\a.exe"}}},
             {Outside, QJsonObject{{"name", "B"}, {"path", "x"}, {"linkpath", outer + "/bin/b.exe"}}}}}};
    const PackageFiles files(bottle);
    QVERIFY(files.write(PackageFiles::SourceName, {{"gone", QJsonObject()}}));

    TestSupport::LogCapture log;
    PackageChecker checker;
    QSignalSpy updates(&checker, &PackageChecker::update);
    checker.take("b", record);
    QVERIFY(checker.entries().isEmpty());
    QTRY_COMPARE(updates.size(), 2);
    QVERIFY(log.contains("gone not in bottles config. skip it."));
    QCOMPARE(checker.selectedCount(), 1);  // what lies in the bottle goes along
    checker.unselect(Inside);
    checker.setDirectory(Inside, outer);
    checker.select(Outside);
    checker.setOnlyCopyExe(Outside);
    checker.setDirectory(Outside, outer);
    QVERIFY(isSaved(&checker));

    QFile file(bottle + PackageFiles::SourceName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString(file.readAll()),
             QString("{\n    \"%1\": {\n        \"dir_to_package\": \"\",\n        \"in_bottles\": true,\n"
                     "        \"is_lnkfile\": false,\n        \"only_copy_exe\": false,\n        \"path\": "
                     "\"%3/dosdevices/c:/App/a.exe\",\n"
                     "        \"path_packaged\": \"%3/dosdevices/c:/App/a.exe\"\n    },\n    \"%2\": {\n"
                     "        \"dir_to_package\": \"%4\",\n        \"in_bottles\": false,\n        "
                     "\"is_lnkfile\": true,\n"
                     "        \"only_copy_exe\": false,\n        \"path\": \"%4/bin/b.exe\",\n"
                     "        \"path_packaged\": \"%3/drive_c/Suite/bin/b.exe\"\n    }\n}\n")
                 .arg(Inside, Outside, bottle, outer));
    QJsonObject forged = files.read(PackageFiles::SourceName);
    forged[Outside] = QJsonObject{{"path", "/etc/passwd"}, {"in_bottles", true}, {"dir_to_package", outer}};
    forged[Inside] = QJsonObject{{"dir_to_package", "/usr"}, {"in_bottles", false}};
    QVERIFY(files.write(PackageFiles::SourceName, forged));
    PackageChecker again;
    again.take("gone", {{"Path", bottle}, {"External_Programs", QJsonObject{{"x", QJsonObject()}}}});
    again.take("b", record);  // the answer for the other one comes too late
    QTRY_COMPARE(again.state(), PackageChecker::State::Ready);
    QVERIFY(again.entries()[Inside].inBottles && again.entries()[Inside].dirToPackage.isEmpty());
    QCOMPARE(again.entries()[Outside].path, outer + "/bin/b.exe");
    QVERIFY(!again.entries()[Outside].inBottles);
    QCOMPARE(again.entries()[Outside].dirToPackage, outer);
    again.take("none", {});
    QVERIFY(log.contains("No config found for: none"));
    QVERIFY(again.entries().isEmpty() && !isSaved(&again));
    QCOMPARE(again.state(), PackageChecker::State::Missing);
}

QTEST_GUILESS_MAIN(PackageConfigTest)
#include "PackageConfigTest.moc"
