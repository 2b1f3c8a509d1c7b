#include <QtTest>

#include "bottleservice/wine/FileTree.h"
#include "bottleservice/wine/ReplaceableFiles.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "support/TestHome.h"

using TestSupport::readFile;

/// Templates and their copies, with plain files for a Wine.
class tst_SlimPrefix : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void replaceable() {
        for (const char* name :
             {"msvcp140.dll", "VCRUNTIME140.dll", "comctl32.dll", "riched20.dll", "d3dx9_43.dll"})
            QVERIFY2(ReplaceableFiles::contains(QString("drive_c/windows/system32/") + name), name);
        QVERIFY(!ReplaceableFiles::contains("drive_c/windows/SysWOW64/kernel32.dll"));
        QVERIFY(ReplaceableFiles::contains("drive_c/windows/winsxs/x/kernel32.dll"));
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

QTEST_GUILESS_MAIN(tst_SlimPrefix)
#include "tst_slimprefix.moc"
