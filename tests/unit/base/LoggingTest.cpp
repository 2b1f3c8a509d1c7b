#include <fcntl.h>
#include <unistd.h>

#include <QLoggingCategory>

#include "core/base/BuildInfo.h"
#include "core/base/Logging.h"
#include "fenk/log/LogManager.h"
#include "support/Table.h"
#include "support/TestHome.h"

Q_LOGGING_CATEGORY(veskHttp, "common.veskhttp")

class LoggingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanHomePaths_data() {
        const TestSupport::Table<QString> row("clean");
        row("/home/anna /home/bob_2:/home/c", "@home_dir@ @home_dir@:@home_dir@");
        row("/home/anna-lena/x", "@home_dir@-lena/x");
        row("/home/", "/home/");
        row("/homes/anna", "/homes/anna");
        row("Z:\\home\\anna\\a.exe", "Z:@home_dir@\\a.exe");
        row("L\"Z:\\\\home\\\\anna\\\\a.exe\"", "L\"Z:@home_dir@\\\\a.exe\"");
        row("\\\\\\\\home\\\\\\\\anna", "@home_dir@");
    }
    void cleanHomePaths() { QTEST(::cleanHomePaths(QTest::currentDataTag()), "clean"); }

    void fileAndConsole() {
        const TestSupport::TestHome home;
        QCoreApplication::setOrganizationName("lumora");
        QCoreApplication::setApplicationName("cellarix");
        const QString logPath = home.cache() + "/lumora/cellarix/cellarix.log";
        const QString consolePath = home.path() + "/console";
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

        const QString start = "^\\d{4}-\\d\\d-\\d\\d, \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\[";
        const QString where = "LoggingTest::fileAndConsole\\(\\) ";
        const QString first = "Info   \\] initLogging\\(\\) Logs write to: " + logPath;
        QStringList expected = {first, first};
        if (!BuildInfo::isRelease())
            expected << "Debug  \\] " + where + "detail";
        expected << "Info   \\] " + where + "http"
                 << "Warning\\] " + where + "opened %1/a.exe";
        for (const QString& path : {logPath, consolePath}) {
            const QStringList written = QString(TestSupport::readFile(path)).split('\n');
            QCOMPARE(written.size(), expected.size() + 1);
            for (int i = 0; i < expected.size(); ++i) {
                QString line = start + expected.at(i) + '$';
                line.replace("%1", path == logPath ? "@home_dir@" : "/home/anna");
                QVERIFY2(QRegularExpression(line).match(written.at(i)).hasMatch(), qPrintable(written.at(i)));
            }
        }
    }
};

QTEST_GUILESS_MAIN(LoggingTest)
#include "LoggingTest.moc"
