#include <fcntl.h>
#include <unistd.h>

#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtTest>

#include "core/base/BuildInfo.h"
#include "core/base/Logging.h"
#include "fenk/LogManager.h"

Q_LOGGING_CATEGORY(veskHttp, "common.veskhttp")

class TestLogging : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanHomePaths_data();
    void cleanHomePaths();
    void fileAndConsole();
};

void TestLogging::cleanHomePaths_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clean");
    const auto row = [](const char* text, const char* clean) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(clean);
    };
    row("", "");
    row("at home", "at home");
    row("/home/anna/a.exe", "@home_dir@/a.exe");
    row("/home/anna /home/bob_2:/home/c", "@home_dir@ @home_dir@:@home_dir@");
    row("file:///home/anna", "file://@home_dir@");
    row("/home/anna-lena/x", "@home_dir@-lena/x");
    row("/home/", "/home/");
    row("/homes/anna", "/homes/anna");
    row("Z:\\home\\anna\\a.exe", "Z:@home_dir@\\a.exe");
    row("L\"Z:\\\\home\\\\anna\\\\a.exe\"", "L\"Z:@home_dir@\\\\a.exe\"");
    row("\\\\\\\\home\\\\\\\\anna", "@home_dir@");
    row("\\home\\", "\\home\\");
    row("/home/anna \\home\\bob", "@home_dir@ @home_dir@");
}

void TestLogging::cleanHomePaths() {
    QFETCH(QString, text);
    QTEST(::cleanHomePaths(text), "clean");
}

void TestLogging::fileAndConsole() {
    QTemporaryDir directory;
    qputenv("XDG_CACHE_HOME", directory.path().toUtf8());
    QCoreApplication::setOrganizationName("lumora");
    QCoreApplication::setApplicationName("cellarix");
    const QString logPath = directory.filePath("lumora/cellarix/cellarix.log");
    QCOMPARE(Fenk::LogManager::getlogFilePath(), logPath);

    const QString consolePath = directory.filePath("console");
    const int saved = ::dup(2);
    const int console = ::open(qPrintable(consolePath), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(console, 2);
    ::close(console);

    initLogging();
    initLogging();
    QLoggingCategory::setFilterRules("common.veskhttp.debug=false");
    qDebug("detail");
    qCDebug(veskHttp, "http detail");
    qCInfo(veskHttp, "http");
    qWarning("opened /home/anna/a.exe");
    ::dup2(saved, 2);
    ::close(saved);

    const auto lines = [](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split('\n') : QStringList();
    };
    const QString start = "^\\d{4}-\\d\\d-\\d\\d, \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\[";
    const QString where = "TestLogging::fileAndConsole\\(\\) ";
    QStringList expected = {"Info   \\] initLogging\\(\\) Logs write to: " + logPath,
                            "Info   \\] initLogging\\(\\) Logs write to: " + logPath};
    if (!BuildInfo::isRelease())
        expected << "Debug  \\] " + where + "detail";
    expected << "Info   \\] " + where + "http"
             << "Warning\\] " + where + "opened %1/a.exe";
    for (const QString& path : {logPath, consolePath}) {
        const QStringList written = lines(path);
        QCOMPARE(written.size(), expected.size() + 1);
        for (int i = 0; i < expected.size(); ++i) {
            QString line = start + expected.at(i) + '$';
            line.replace("%1", path == logPath ? "@home_dir@" : "/home/anna");
            QVERIFY2(QRegularExpression(line).match(written.at(i)).hasMatch(), qPrintable(written.at(i)));
        }
    }
}

QTEST_GUILESS_MAIN(TestLogging)
#include "tst_logging.moc"
