#include <sys/stat.h>

#include <QCryptographicHash>
#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"
#include "bottleservice/wine/SlimPrefix.h"

namespace {

const QString System = "/drive_c/windows/system32/";
const QStringList Overwritten = {"msvcp140.dll", "vcruntime140.dll", "comctl32.dll", "riched20.dll"};

QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

/// Names, sizes and change times of a tree: no write leaves the change time as it was.
QByteArray digest(const QString& root) {
    QMap<QString, QByteArray> entries;
    QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        struct stat status = {};
        const QString path = walk.next();
        ::lstat(QFile::encodeName(path).constData(), &status);
        entries[path] = QByteArray::number(qint64(status.st_size)) + ' ' +
                        QByteArray::number(qint64(status.st_ctim.tv_sec)) + ' ' +
                        QByteArray::number(qint64(status.st_ctim.tv_nsec));
    }
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (auto it = entries.begin(); it != entries.end(); ++it)
        hash.addData(it.key().toUtf8() + '\n' + it.value() + '\n');
    return hash.result();
}

}  // namespace

/// Bottles as copies of a template that real Wine made.
class tst_ServiceTemplates : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        m_service = std::make_unique<ServiceFixture>();
        QVERIFY(m_service->start());
        const QDBusPendingCall first = m_service->callLater("createBottles", {"first", ""});
        const QDBusPendingCall second = m_service->callLater("createBottles", {"second", ""});
        for (QDBusPendingCall call : {first, second}) {
            call.waitForFinished();
            QVERIFY2(call.reply().arguments().value(0).toString().contains("\"created\":true"),
                     qPrintable(call.reply().arguments().value(0).toString()));
        }
        const QStringList made = QDir(m_service->dataDir() + "/templates")
                                     .entryList(QDir::AllDirs | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(made.size(), 1);
        m_template = m_service->dataDir() + "/templates/" + made[0];
    }

    void bottlesAreSlim() {
        const QString path = m_service->bottlePath("second");
        QVERIFY(QFileInfo(path + System + "kernel32.dll").isSymLink());
        for (const QString& name : Overwritten)
            QVERIFY2(!QFileInfo(path + System + name).isSymLink(), qPrintable(name));
    }

    void installerOverwritesItsOwnFiles_data() {
        QTest::addColumn<QString>("target");
        QTest::newRow("64 bit") << "Target amd64-unicode\n";
        QTest::newRow("32 bit") << "";
    }
    void installerOverwritesItsOwnFiles() {
        QFETCH(QString, target);
        if (QStandardPaths::findExecutable("makensis").isEmpty())
            QSKIP("makensis-is-not-installed");
        const QString bottle = m_service->bottlePath("second");
        const QString system = target.isEmpty() ? QString("/drive_c/windows/syswow64/") : System;
        if (target.isEmpty() && !QFileInfo::exists("/usr/lib/i386-linux-gnu/wine/i386-windows/kernel32.dll"))
            QSKIP("wine32-is-not-installed");
        QTemporaryDir work;
        QVERIFY(QDir(work.path()).mkdir("run"));  // or the installer would load the files beside it
        QByteArray script =
            target.toUtf8() +
            "Name x\nOutFile run/setup.exe\nSilentInstall silent\nRequestExecutionLevel user\n"
            "Section\nSetOverwrite on\nSetOutPath $SYSDIR\n";
        for (const QString& name : Overwritten) {
            QFile file(work.path() + '/' + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("installed " + name.toUtf8());
            script += "File " + name.toUtf8() + '\n';
        }
        QFile file(work.path() + "/setup.nsi");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(script + "FileOpen $0 $SYSDIR\\done.txt w\nFileClose $0\nSectionEnd\n");
        file.close();
        QProcess makensis;
        makensis.setWorkingDirectory(work.path());
        makensis.start("makensis", {"-V1", "setup.nsi"});
        QVERIFY(makensis.waitForFinished(60000));
        QCOMPARE(makensis.exitCode(), 0);

        const QByteArray before = digest(m_template);
        QMap<QString, QByteArray> machine;
        for (const QString& directory : SlimPrefix::peDirectories(QStandardPaths::findExecutable("wine")))
            machine[directory] = digest(directory);
        QCOMPARE(m_service->call("run_command", {"second", '"' + work.path() + "/run/setup.exe\" /S"})
                     .errorMessage(),
                 QString());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(bottle + system + "done.txt"), 60000);
        m_service->call("killWineServer", {"second"});
        for (const QString& name : Overwritten)
            QCOMPARE(read(bottle + system + name), "installed " + name.toUtf8());
        QCOMPARE(digest(m_template), before);
        for (auto it = machine.begin(); it != machine.end(); ++it)
            QCOMPARE(digest(it.key()), it.value());
    }

    void recreatesWhileServing() {
        // The script finds the service beside itself.
        const QString files = m_service->home() + "/files/";
        m_script = files + "share/cellarix/package-scripts/init-bottle-in-client.sh";
        QVERIFY(QDir().mkpath(QFileInfo(m_script).path()) && QDir().mkpath(files + "bin"));
        QVERIFY(QFile::link(SERVICE_EXECUTABLE, files + "bin/lumora-wine-launcher"));
        QVERIFY(QFile::copy(TEST_SOURCE_DIR "/src/platform/scripts/package-scripts/init-bottle-in-client.sh",
                            m_script));
        QDir templates(m_service->dataDir() + "/templates");
        QVERIFY(templates.mkdir(".creating-x"));
        QCOMPARE(check(), 0);
        QVERIFY(templates.rmdir(".creating-x"));
        QVERIFY(QFile::rename(m_template + "/user.reg", m_template + "/moved"));
        QCOMPARE(check(), 1);
        QVERIFY(QFile::rename(m_template + "/moved", m_template + "/user.reg"));
        QCOMPARE(check(), 0);
        write(m_service->dataDir() + "/templates.json", R"({"lumora-wine10-stable": "0123", "gone": "0"})");
        QCOMPARE(check(), 1);

        const QByteArray before = digest(m_template);
        QProcess script;
        script.setProcessEnvironment(m_service->environment());
        script.setProcessChannelMode(QProcess::MergedChannels);
        script.start(m_script, {"-r", "--recreate"});
        QVERIFY(script.waitForReadyRead());
        QVERIFY(m_service->call("createBottles", {"third", ""})
                    .arguments()
                    .value(0)
                    .toString()
                    .contains("\"created\":true"));
        QVERIFY2(script.state() == QProcess::Running, "the bottle waited for the new template");
        QVERIFY(script.waitForFinished(120000));
        const QByteArray lines = script.readAll();
        QVERIFY2(lines.contains("Made it in ") && lines.endsWith("up to date.\n"), lines.constData());
        QCOMPARE(script.exitCode(), 0);
        QCOMPARE(check(), 0);
        QVERIFY(digest(m_template) != before);
        QVERIFY(QFileInfo::exists(m_service->bottlePath("third") + System + "kernel32.dll"));
        QTRY_COMPARE(templates.entryList(QDir::AllDirs | QDir::Hidden | QDir::NoDotAndDotDot),
                     QStringList(QFileInfo(m_template).fileName()));
    }

    void followsItsWine() {
        m_service->kill();
        const QString path = m_service->bottlePath("first");
        const QString key = QFileInfo(m_template).fileName();
        for (const char* bottle : {"first", "second"}) {
            QByteArray settings = read(m_service->bottlePath(bottle) + "/bottle.yml");
            QVERIFY(settings.contains(key.toUtf8()));
            write(m_service->bottlePath(bottle) + "/bottle.yml", settings.replace(key.toUtf8(), "0123"));
        }
        QVERIFY(QDir(m_service->dataDir()).mkdir("templates/.creating-x"));
        QCOMPARE(check(), 1);
        QVERIFY(QFile::remove(path + System + "kernel32.dll"));
        QVERIFY(QDir(m_service->dataDir()).mkdir("templates/stale"));
        QVERIFY(m_service->start());
        for (const char* bottle : {"first", "second"})
            QTRY_VERIFY_WITH_TIMEOUT(
                read(m_service->bottlePath(bottle) + "/bottle.yml").contains(key.toUtf8()), 60000);
        QVERIFY(QFileInfo(path + System + "kernel32.dll").exists());
        QTRY_VERIFY(!QFileInfo::exists(m_service->dataDir() + "/templates/stale"));
        QCOMPARE(check(), 0);
    }

private:
    /// What the script answers to the question whether templates have to be made anew.
    int check() const {
        QProcess script;
        script.setProcessEnvironment(m_service->environment());
        script.start(m_script, {"-c"});
        return script.waitForFinished() ? script.exitCode() : -1;
    }

    QString m_script;
    std::unique_ptr<ServiceFixture> m_service;
    QString m_template;
};

QTEST_GUILESS_MAIN(tst_ServiceTemplates)
#include "tst_servicetemplates.moc"
