#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

#include "backend/BusResult.h"
#include "backend/EmulatorPackage.h"
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

    void emulatorPackage_data() {
        // The pattern is asked of the package manager; empty: nothing is.
        const Table<QString, QString, QString> row("emulator", "pattern", "text");
        row("none in use", "", "", "");
        row("known by another name", "exagear", "", "exagear-core-x64a64 1.2");
        row("found", "fex", "*fex*", "fex-emu 1.2");
        row("not found", "qemu9", "*qemu9*", "");
    }
    void emulatorPackage() {
        QFETCH(QString, emulator);
        QFETCH(QString, pattern);
        const TestSupport::LogCapture log;
        QString asked;
        const EmulatorPackage::PackageSource queries{
            [&](const QString& text) {
                asked = text;
                return text == "*fex*" ? QStringList{"fex-emu", "fex-extra"} : QStringList();
            },
            [](const QString&) { return QString("1.2"); }};
        QTEST(EmulatorPackage::describeEmulator(emulator, queries), "text");
        QCOMPARE(asked, pattern);
        QCOMPARE(log.contains(QtWarningMsg, "unknown emulator: " + emulator + ", search via dpkg"),
                 !pattern.isEmpty());
    }

    void busResult_data() {
        const Table<QDBusMessage, bool, QString, bool> row("message", "ok", "text", "okWhenIgnored");
        const QDBusMessage call = QDBusMessage::createMethodCall("a.b", "/", "a.b", "c");
        row("text", call.createReply(QString("[1]")), true, "[1]", true);
        row("number", call.createReply(7), true, "7", true);
        row("variant", call.createReply(QVariant::fromValue(QDBusVariant("v"))), true, "v", true);
        row("two arguments", call.createReply(QVariantList{"first", "second"}), true, "first", true);
        row("no argument", call.createReply(), false, "", true);
        row("a map", call.createReply(QVariantMap{{"a", 1}}), false, "", true);
        row("error", call.createErrorReply(QDBusError::NoReply, "gone"), false, "", false);
        row("nothing", QDBusMessage(), false, "", false);
    }
    void busResult() {
        QFETCH(QDBusMessage, message);
        QFETCH(bool, ok);
        const BusResult result = BusReply::fromMessage(message);
        QCOMPARE(result.ok, ok);
        QTEST(result.text, "text");
        QCOMPARE(result.errorMessage.isEmpty(), ok);
        QTEST(BusReply::fromMessage(message, BusReply::Wanted::Ignored).ok, "okWhenIgnored");
    }

    void errorWithoutMessageIsNamed() {
        const QDBusMessage call = QDBusMessage::createMethodCall("a.b", "/", "a.b", "c");
        QCOMPARE(BusReply::fromMessage(call.createErrorReply("a.b.Broken", "")).errorMessage,
                 QString("a.b.Broken"));
    }
};

QTEST_GUILESS_MAIN(TextRulesTest)
#include "TextRulesTest.moc"
