#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>

#include "bottleservice/wine/Processes.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/WineEnvironment.h"

/// Processes and runners on made-up directories.
class tst_WineProcesses : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void environment_data();
    void environment();
    void findsProcessesOfABottle();
    void runners();
    void version_data();
    void version();
    void localeIsUtf8();

private:
    void addProcess(const QString& proc, int pid, const QString& exe, const QByteArray& environ,
                    const QByteArray& command);
};

void tst_WineProcesses::environment_data() {
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QByteArray>("prefix");
    QTest::newRow("plain") << QByteArray("A=1\0WINEPREFIX=/p\0B=2\0", 22) << QByteArray("/p");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("no end") << QByteArray("WINEPREFIX=/p") << QByteArray("/p");
    QTest::newRow("value with =") << QByteArray("WINEPREFIX=/p=q\0", 16) << QByteArray("/p=q");
    QTest::newRow("only a suffix") << QByteArray("XWINEPREFIX=/p\0", 15) << QByteArray();
    QTest::newRow("in another value") << QByteArray("A=\nWINEPREFIX=/p\0", 17) << QByteArray();
    QTest::newRow("first wins") << QByteArray("WINEPREFIX=/1\0WINEPREFIX=/2\0", 28) << QByteArray("/1");
    QTest::newRow("garbage") << QByteArray("\xff\0=\0==\0\0WINEPREFIX\0", 19) << QByteArray();
}

void tst_WineProcesses::environment() {
    QFETCH(QByteArray, block);
    QTEST(Processes::parseEnvironment(block).value("WINEPREFIX"), "prefix");
}

void tst_WineProcesses::addProcess(const QString& proc, int pid, const QString& exe,
                                   const QByteArray& environ, const QByteArray& command) {
    const QString directory = proc + '/' + QString::number(pid);
    QVERIFY(QDir().mkpath(directory));
    QVERIFY(QFile::link(exe, directory + "/exe"));
    for (const auto& [name, content] : {std::pair("environ", environ), std::pair("cmdline", command)}) {
        QFile file(directory + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
}

void tst_WineProcesses::findsProcessesOfABottle() {
    QTemporaryDir proc;
    QTemporaryDir data;
    const QString bottle = data.filePath("bottle");
    QDir().mkdir(bottle);
    QFile::link(bottle, data.filePath("alias"));
    const QByteArray prefix = "WINEPREFIX=" + QFile::encodeName(bottle) + '\0';
    const QByteArray program = prefix + "_CXB_WINE_PROGRAM_UUID=id" + '\0';
    const QByteArray other = "WINEPREFIX=" + QFile::encodeName(bottle + "2") + '\0';
    const QString preloader = "/usr/lib/wine/wine64-preloader.static";
    const auto windows = [](const char* name) { return QByteArray("C:\\windows\\system32\\") + name + '\0'; };

    addProcess(proc.path(), 10, preloader, program, QByteArray("Z:\\game.exe\0-x\0", 15));
    addProcess(proc.path(), 11, preloader + " (deleted)", prefix, windows("notepad.exe"));
    addProcess(proc.path(), 12, "/usr/lib/wine/wineserver64", program, "wineserver");
    addProcess(proc.path(), 13, preloader, program, windows("services.exe"));
    addProcess(proc.path(), 14, preloader, program, windows("explorer.exe") + QByteArray("/desktop\0", 9));
    addProcess(proc.path(), 15, preloader, program, windows("explorer.exe"));
    addProcess(proc.path(), 16, preloader, other, windows("notepad.exe"));
    addProcess(proc.path(), 17, "/bin/bash", program, "bash");
    addProcess(proc.path(), 18, "/usr/lib/firefox/firefox", program, "firefox");
    addProcess(proc.path(), 19, preloader, "WINEPREFIX=" + QFile::encodeName(data.filePath("alias")) + "/",
               windows("notepad.exe"));
    addProcess(proc.path(), 1, preloader, program, "init");
    QDir().mkdir(proc.filePath("20"));

    const Processes processes(proc.path());
    const auto pids = [](const std::vector<Processes::Entry>& entries) {
        QList<int> list;
        for (const Processes::Entry& entry : entries)
            list += entry.pid;
        std::sort(list.begin(), list.end());
        return list;
    };
    QCOMPARE(pids(processes.ofBottle(bottle)), QList<int>({10, 11, 12, 13, 14, 15, 19}));
    QCOMPARE(pids(processes.ofProgram(bottle, "id")), QList<int>({10, 15}));
    QCOMPARE(pids(processes.ofProgram(bottle, "")), QList<int>({11, 19}));
    QVERIFY(processes.ofProgram(bottle, "other").empty());
}

void tst_WineProcesses::runners() {
    QTemporaryDir data;
    const auto addExecutable = [&data](const QString& path) {
        const QString file = data.filePath(path);
        QDir().mkpath(QFileInfo(file).path());
        QFile executable(file);
        QVERIFY(executable.open(QIODevice::WriteOnly));
        executable.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    };
    addExecutable("runners/own/bin/wine");
    addExecutable("runners/own/bin/wineserver");
    addExecutable("path/wine");
    addExecutable("path/wineserver");
    QDir().mkpath(data.filePath("runners/empty/bin"));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(data.filePath("path")));
    const Runners runners(data.path());
    QCOMPARE(runners.names(), QStringList({Runners::DefaultName, "own"}));
    QCOMPARE(runners.find("own")->wineserver, data.filePath("runners/own/bin/wineserver"));
    QCOMPARE(runners.find(Runners::DefaultName)->wine, data.filePath("path/wine"));
    for (const char* name : {"", "empty", "..", ".", "../runners/own", "missing"})
        QVERIFY2(!runners.find(name), name);
    qputenv("PATH", "/nonexistent");
    QVERIFY(!runners.find(Runners::DefaultName));
    qputenv("PATH", path);
}

void tst_WineProcesses::version_data() {
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QString>("version");
    QTest::newRow("debian") << QByteArray("wine-8.0 (Debian 8.0~repack-4)\n") << "8.0";
    QTest::newRow("staging") << QByteArray("wine-10.0-rc1 (Staging)") << "10.0-rc1";
    QTest::newRow("other") << QByteArray("something else\nmore") << "something else";
    QTest::newRow("empty") << QByteArray() << QString("");
}

void tst_WineProcesses::version() {
    QFETCH(QByteArray, output);
    QTEST(Runners::parseVersion(output), "version");
}

void tst_WineProcesses::localeIsUtf8() {
    QProcessEnvironment base;
    base.insert("LANG", "zh_CN.UTF-8");
    base.insert("WINEPREFIX", "/other");
    base.insert("_CXB_WINE_PROGRAM_UUID", "x");
    const QProcessEnvironment kept = WineEnvironment::forProcess({{"A", "1"}}, base);
    QCOMPARE(kept.toStringList().join(' '), QString("A=1 LANG=zh_CN.UTF-8"));
    base.insert("LC_ALL", "C");
    QCOMPARE(WineEnvironment::forProcess({}, base).value("LC_CTYPE"), QString("C.UTF-8"));
    QVERIFY(!WineEnvironment::forProcess({}, base).contains("LC_ALL"));
}

QTEST_GUILESS_MAIN(tst_WineProcesses)
#include "tst_wineprocesses.moc"
