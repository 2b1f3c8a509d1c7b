#include <QtTest>

#include "bottleservice/wine/FileTree.h"
#include "bottleservice/wine/ReplaceableFiles.h"
#include "bottleservice/wine/SlimPrefix.h"

namespace {

void write(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

}  // namespace

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
        QTemporaryDir home;
        const QString wine = home.path() + "/runner/bin/wine";
        const QString pe = home.path() + "/runner/lib/wine/x86_64-windows/";
        write(wine, "#!");
        for (const char* name : {"kernel32.dll", "user32.dll", "comctl32.dll", "other.dll"})
            write(pe + name, QByteArray("pe ") + name);
        QCOMPARE(SlimPrefix::peDirectories(wine), QStringList{QDir::cleanPath(pe)});

        const QString made = home.path() + "/template";
        const QString system = "/drive_c/windows/system32/";
        for (const char* name : {"kernel32.dll", "user32.dll", "comctl32.dll"})
            write(made + system + name, QByteArray("pe ") + name);
        write(made + system + "other.dll", "PE other.dll");
        QVERIFY(QFile::link("/nowhere", made + "/drive_c/Documents"));
        const std::atomic_bool go(false);
        QCOMPARE(SlimPrefix::slim(made, wine, go), QString());
        const auto isLink = [&](const QString& path) { return QFileInfo(path).isSymLink(); };
        QVERIFY(isLink(made + system + "kernel32.dll") && isLink(made + system + "user32.dll"));
        QVERIFY(!isLink(made + system + "comctl32.dll") && !isLink(made + system + "other.dll"));
        QCOMPARE(read(made + "/.update-timestamp"), QByteArray("disable\n"));

        const QString bottle = home.path() + "/bottle";
        QDir().mkdir(bottle);
        QCOMPARE(FileTree::copy(made, bottle, go), QString());
        QCOMPARE(QFile::symLinkTarget(bottle + system + "kernel32.dll"),
                 QDir::cleanPath(pe) + "/kernel32.dll");
        QCOMPARE(QFile::symLinkTarget(bottle + "/drive_c/Documents"), QString("/nowhere"));
        QCOMPARE(read(bottle + system + "comctl32.dll"), QByteArray("pe comctl32.dll"));

        // A newer Wine: one file changed, one is new, one of the links leads nowhere; the bottle has one of
        // its own.
        const QString fresh = home.path() + "/fresh";
        QDir().mkdir(fresh);
        QCOMPARE(FileTree::copy(made, fresh, go), QString());
        write(fresh + system + "comctl32.dll", "new");
        write(fresh + system + "other.dll", "new");
        write(fresh + system + "deep/added.dll", "new");
        write(bottle + system + "other.dll", "the bottle's own");
        QVERIFY(QFile::remove(bottle + system + "user32.dll"));
        QVERIFY(QFile::link("/gone", bottle + system + "user32.dll"));
        QVERIFY(QFile::rename(bottle + "/drive_c/windows/system32", home.path() + "/elsewhere"));
        QVERIFY(QFile::link(home.path() + "/elsewhere", bottle + "/drive_c/windows/system32"));
        QCOMPARE(SlimPrefix::renew(bottle, made, fresh, go), QString());
        QCOMPARE(read(bottle + system + "comctl32.dll"),
                 QByteArray("pe comctl32.dll"));  // not through a link
        QVERIFY(QFile::remove(bottle + "/drive_c/windows/system32"));
        QVERIFY(QFile::rename(home.path() + "/elsewhere", bottle + "/drive_c/windows/system32"));
        QCOMPARE(SlimPrefix::renew(bottle, made, fresh, go), QString());
        QCOMPARE(read(bottle + system + "comctl32.dll"), QByteArray("new"));
        QCOMPARE(read(bottle + system + "deep/added.dll"), QByteArray("new"));
        QCOMPARE(read(bottle + system + "other.dll"), QByteArray("the bottle's own"));
        QCOMPARE(read(bottle + system + "user32.dll"), QByteArray("pe user32.dll"));
        QVERIFY(SlimPrefix::renew(bottle, made, fresh, std::atomic_bool(true)).contains("cancelled"));
    }
};

QTEST_GUILESS_MAIN(tst_SlimPrefix)
#include "tst_slimprefix.moc"
