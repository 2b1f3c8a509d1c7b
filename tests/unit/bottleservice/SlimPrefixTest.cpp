#include <QtTest>

#include "bottleservice/bottles/RegistryMerge.h"
#include "bottleservice/files/FileTree.h"
#include "bottleservice/wine/ReplaceableFiles.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::readFile;
using TestSupport::Table;

/// Templates and their copies, with plain files for a Wine.
class SlimPrefixTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void replaceable() {
        for (const char* name :
             {"msvcp140.dll", "VCRUNTIME140.dll", "comctl32.dll", "riched20.dll", "d3dx9_43.dll"})
            QVERIFY2(ReplaceableFiles::contains(QString("drive_c/windows/system32/") + name), name);
        QVERIFY(!ReplaceableFiles::contains("drive_c/windows/SysWOW64/kernel32.dll"));
        QVERIFY(ReplaceableFiles::contains("drive_c/windows/winsxs/x/kernel32.dll"));
    }

    void registry_data() {
        const Table<QByteArray, QByteArray, QByteArray, QByteArray> row("own", "old", "now", "expected");
        row("new value", "\"a\"=\"1\"\n", "\"a\"=\"1\"\n", "\"a\"=\"1\"\n\"b\"=\"2\"\n",
            "\"a\"=\"1\"\n\"b\"=\"2\"\n");
        row("changed by Wine", "\"A\"=\"1\"\n@=\"x\"\n", "\"A\"=\"1\"\n", "\"a\"=\"2\"\n",
            "\"a\"=\"2\"\n@=\"x\"\n");
        row("changed in the bottle", "\"a\"=\"own\"\n", "\"a\"=\"1\"\n", "\"a\"=\"2\"\n", "\"a\"=\"own\"\n");
        row("removed in the bottle", "", "\"a\"=\"1\"\n", "\"a\"=\"2\"\n", "");
        row("old template is gone", "\"a\"=\"1\"\n", "-", "\"a\"=\"2\"\n\"b\"=\"3\"\n",
            "\"a\"=\"1\"\n\"b\"=\"3\"\n");
        row("several lines", "\"a\"=hex:01,\\\n  02\n\"z\"=\"1\"\n", "\"a\"=hex:01,\\\n  02\n",
            "\"a\"=hex:03,\\\n  04\n", "\"a\"=hex:03,\\\n  04\n\"z\"=\"1\"\n");
        row("quote in a name", "\"a\\\"=\"=\"1\"\n", "\"a\\\"=\"=\"1\"\n", "\"a\\\"=\"=\"2\"\n",
            "\"a\\\"=\"=\"2\"\n");
        row("machine", "\"MachineGuid\"=\"1\"\n", "\"MachineGuid\"=\"1\"\n", "\"MachineGuid\"=\"2\"\n",
            "\"MachineGuid\"=\"1\"\n");
        const QByteArray added("\n[Added\\\\K\\]] 7\n#time=9\n\"b\"=dword:00000001\n");
        row("new key", "\"a\"=\"1\"\n", "", added, "\"a\"=\"1\"\n" + added);
        row("removed key", "\"a\"=\"1\"\n", added, added, "\"a\"=\"1\"\n");
        row("hardware", "", "", "\n[System\\\\CurrentControlSet\\\\Enum\\\\PCI] 7\n@=\"x\"\n", "");
        row("other architecture", "\"a\"=\"1\"\n", "\"a\"=\"1\"\n", "#arch=win32", "\"a\"=\"1\"\n");
    }
    void registry() {
        const auto file = [](const QByteArray& values) {
            const QByteArray head("WINE REGISTRY Version 2\n;; All keys\n\n");
            if (values.startsWith('#'))
                return head + values + "\n\n[Software\\\\K] 1\n\"a\"=\"2\"\n\n";
            return head + "#arch=win64\n\n[Software\\\\K] 1\n#time=5\n" + values + '\n';
        };
        QFETCH(QByteArray, own);
        QFETCH(QByteArray, old);
        QFETCH(QByteArray, now);
        QFETCH(QByteArray, expected);
        const QByteArray result =
            RegistryMerge::merged(file(own), old == "-" ? QByteArray() : file(old), file(now));
        QCOMPARE(result, file(expected));
        QCOMPARE(RegistryMerge::merged("no registry", file(old), file(now)), QByteArray("no registry"));
    }

    void slimCopyRenew() {
        const TestSupport::TestHome home;
        const std::atomic_bool go(false);
        const QString pe = home.path() + "/runner/lib/wine/x86_64-windows";
        const QString wine = home.write("runner/bin/wine", "#!");
        const QString system = "/drive_c/windows/system32/";
        for (const char* name : {"kernel32.dll", "user32.dll", "comctl32.dll", "other.dll"}) {
            home.write(QString("runner/lib/wine/x86_64-windows/") + name, QByteArray("pe ") + name);
            home.write("template" + system + name, QByteArray("pe ") + name);
        }
        home.write("template" + system + "other.dll", "PE other.dll");
        QCOMPARE(SlimPrefix::peDirectories(wine), QStringList{pe});
        const QString made = home.path() + "/template";
        QVERIFY(QFile::link("/nowhere", made + "/drive_c/Documents"));
        QCOMPARE(SlimPrefix::slim(made, wine, go), QString());
        const auto isLink = [&](const char* name) { return QFileInfo(made + system + name).isSymLink(); };
        QVERIFY(isLink("kernel32.dll") && isLink("user32.dll"));
        QVERIFY(!isLink("comctl32.dll") && !isLink("other.dll"));
        QCOMPARE(readFile(made + "/.update-timestamp"), QByteArray("disable\n"));

        const QString bottle = home.path() + "/bottle";
        const QString fresh = home.path() + "/fresh";
        for (const QString& copy : {bottle, fresh})
            QVERIFY(QDir().mkdir(copy) && FileTree::copy(made, copy, go).isEmpty());
        QCOMPARE(QFile::symLinkTarget(bottle + system + "kernel32.dll"), pe + "/kernel32.dll");
        QCOMPARE(QFile::symLinkTarget(bottle + "/drive_c/Documents"), QString("/nowhere"));
        const auto content = [&](const char* name) { return readFile(bottle + system + name); };
        QCOMPARE(content("comctl32.dll"), QByteArray("pe comctl32.dll"));

        // A newer Wine: one file changed, one is new, one of the links leads nowhere; the bottle has one of
        // its own.
        for (const char* name : {"comctl32.dll", "other.dll", "deep/added.dll"})
            home.write("fresh" + system + name, "new");
        home.write("bottle" + system + "other.dll", "the bottle's own");
        QVERIFY(QFile::remove(bottle + system + "user32.dll"));
        QVERIFY(QFile::link("/gone", bottle + system + "user32.dll"));
        // Nothing is written through a link.
        const QString directory = bottle + "/drive_c/windows/system32";
        const QString elsewhere = home.path() + "/elsewhere";
        QVERIFY(QFile::rename(directory, elsewhere) && QFile::link(elsewhere, directory));
        QCOMPARE(SlimPrefix::renew(bottle, made, fresh, go), QString());
        QCOMPARE(content("comctl32.dll"), QByteArray("pe comctl32.dll"));
        QVERIFY(QFile::remove(directory) && QFile::rename(elsewhere, directory));
        QCOMPARE(SlimPrefix::renew(bottle, made, fresh, go), QString());
        QCOMPARE(content("comctl32.dll"), QByteArray("new"));
        QCOMPARE(content("deep/added.dll"), QByteArray("new"));
        QCOMPARE(content("other.dll"), QByteArray("the bottle's own"));
        QCOMPARE(content("user32.dll"), QByteArray("pe user32.dll"));
        QVERIFY(SlimPrefix::renew(bottle, made, fresh, std::atomic_bool(true)).contains("cancelled"));
    }
};

QTEST_GUILESS_MAIN(SlimPrefixTest)
#include "SlimPrefixTest.moc"
