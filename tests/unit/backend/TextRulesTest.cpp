#include "backend/TextUtils.h"
#include "probes/MachineUtils.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

class TextRulesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void formatSize_data() {
        const Table<qint64, QString> row("bytes", "text");
        row("last K", 1048575, "1023K");
        row("first M", 1048576, "1M");
        // The fraction goes at every level, so nothing is rounded up on the way.
        row("nearly 4G", (4LL << 30) - 1, "3G");
        row("greatest", std::numeric_limits<qint64>::max(), "8E");
    }
    void formatSize() {
        QFETCH(qint64, bytes);
        QTEST(TextUtils::formatSize(bytes), "text");
    }

    void linkHtml() {
        const auto anchor = [](const char* url, const char* text) {
            return QString("<a style=\"text-decoration: none;\" href=\"") + url + "\">" + text + "</a>";
        };
        QCOMPARE(TextUtils::linkHtml("http://localhost/a%2b", "%1"), anchor("http://localhost/a%2b", "%1"));
        QCOMPARE(TextUtils::linkHtml("x\" onclick=\"y", "<b>"),
                 anchor("x&quot; onclick=&quot;y", "&lt;b&gt;"));
    }

    void cpuArchitecture() {
        const QString words[][2] = {
            {"x86_64", "amd64"}, {"aarch64", "arm64"}, {"arm64", "arm64"}, {"my-x86_64", "my-x86_64"}};
        for (const auto& [word, expected] : words)
            QCOMPARE(MachineUtils::cpuArchitecture(word), expected);
    }

    void osVersion_data() {
        const Table<QByteArray, QString> row("content", "version");
        row("complete",
            "[Version]\nSystemName=Lumos\nSystemName[zh_CN]=\xe5\x85\x89\nEditionName=Professional\n"
            "MajorVersion=23\nMinorVersion=1050\n",
            "Lumos,Professional,23,1050");
        row("a key is missing", "[Version]\nSystemName=Lumos\n", "Lumos,,,");
        row("not such a file", "\x01\x02 no entry at all", "");
    }
    void osVersion() {
        QFETCH(QByteArray, content);
        const TestSupport::TestHome home;
        const TestSupport::LogCapture log;
        QTEST(MachineUtils::osVersion(home.write("os-version", content)), "version");
        QCOMPARE(MachineUtils::osVersion("/nonexistent/os-version"), QString());
        QVERIFY2(log.contains(QtWarningMsg, "/nonexistent/os-version"), qPrintable(log.text()));
    }
};

QTEST_GUILESS_MAIN(TextRulesTest)
#include "TextRulesTest.moc"
