#include <QtTest>

#include "backend/TextUtils.h"
#include "probes/MachineUtils.h"
#include "support/LogCapture.h"
#include "support/TestHome.h"

class TextRulesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void formatSize_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << 0LL << "0B";
        QTest::newRow("last byte") << 1023LL << "1023B";
        QTest::newRow("first K") << 1024LL << "1K";
        QTest::newRow("cut off") << 1536LL << "1K";
        QTest::newRow("last K") << 1048575LL << "1023K";
        QTest::newRow("first M") << 1048576LL << "1M";
        // 3.99 G: the fraction goes at every level, so nothing is rounded up on the way.
        QTest::newRow("nearly 4G") << (4LL << 30) - 1 << "3G";
        QTest::newRow("T") << (5LL << 40) << "5T";
        QTest::newRow("P") << (6LL << 50) << "6P";
        QTest::newRow("greatest") << std::numeric_limits<qint64>::max() << "8E";
    }
    void formatSize() {
        QFETCH(qint64, bytes);
        QTEST(TextUtils::formatSize(bytes), "text");
    }

    void linkHtml_data() {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("html");
        QTest::newRow("plain")
            << "http://localhost/cn.html"
            << "Service Agreement"
            << R"(<a style="text-decoration: none;" href="http://localhost/cn.html">Service Agreement</a>)";
        QTest::newRow("place marks stay") << "a%2b"
                                          << "%1"
                                          << R"(<a style="text-decoration: none;" href="a%2b">%1</a>)";
        QTest::newRow("no way out")
            << "x\" onclick=\"y"
            << "<b>"
            << R"(<a style="text-decoration: none;" href="x&quot; onclick=&quot;y">&lt;b&gt;</a>)";
    }
    void linkHtml() {
        QFETCH(QString, url);
        QFETCH(QString, text);
        QTEST(TextUtils::linkHtml(url, text), "html");
    }

    void cpuArchitecture_data() {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("architecture");
        QTest::newRow("pc") << "x86_64"
                            << "amd64";
        QTest::newRow("arm, kernel's word") << "aarch64"
                                            << "arm64";
        QTest::newRow("arm, toolkit's word") << "arm64"
                                             << "arm64";
        QTest::newRow("only at the start") << "my-x86_64"
                                           << "my-x86_64";
        QTest::newRow("other") << "loongarch64"
                               << "loongarch64";
    }
    void cpuArchitecture() {
        QFETCH(QString, word);
        QTEST(MachineUtils::cpuArchitecture(word), "architecture");
    }

    void osVersion_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("version");
        QTest::newRow("complete") << QByteArray(
                                         "[Version]\nSystemName=Lumos\nSystemName[zh_CN]=\xe5\x85\x89\n"
                                         "EditionName=Professional\nMajorVersion=23\nMinorVersion=1050\n")
                                  << "Lumos,Professional,23,1050";
        QTest::newRow("a key is missing") << QByteArray("[Version]\nSystemName=Lumos\n") << "Lumos,,,";
        QTest::newRow("not such a file") << QByteArray("\x01\x02 no entry at all") << "";
    }
    void osVersion() {
        QFETCH(QByteArray, content);
        const TestSupport::TestHome home;
        const TestSupport::LogCapture log;
        QTEST(MachineUtils::osVersion(home.write("os-version", content)), "version");
    }

    void osVersionOfMissingFile() {
        const TestSupport::LogCapture log;
        QCOMPARE(MachineUtils::osVersion("/nonexistent/os-version"), QString());
        QVERIFY2(log.contains(QtWarningMsg, "/nonexistent/os-version"), qPrintable(log.text()));
    }

    void parsedChildrenSpeakEnglish() {
        TestSupport::EnvironmentGuard guard;
        guard.set("LANGUAGE", "zh_CN");
        guard.set("CELLARIX_PROBE", "kept");
        const QProcessEnvironment environment = englishProcessEnvironment();
        QCOMPARE(environment.value("LC_ALL"), QString("en_US.UTF-8"));
        QCOMPARE(environment.value("LANGUAGE"), QString("en_US"));
        QCOMPARE(environment.value("CELLARIX_PROBE"), QString("kept"));
    }
};

QTEST_GUILESS_MAIN(TextRulesTest)
#include "TextRulesTest.moc"
