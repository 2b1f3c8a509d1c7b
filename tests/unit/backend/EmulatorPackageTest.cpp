#include "backend/EmulatorPackage.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::LogCapture;

class EmulatorPackageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void describe_data() {
        // The pattern is asked of the package manager; empty: nothing is.
        const TestSupport::Table<QString, QString, QString> row("emulator", "pattern", "text");
        row("none in use", "", "", "");
        row("known by another name", "exagear", "", "exagear-core-x64a64 1.2");
        row("found", "fex", "*fex*", "fex-emu 1.2");
        row("not found", "qemu9", "*qemu9*", "");
    }
    void describe() {
        QFETCH(QString, emulator);
        QFETCH(QString, pattern);
        const LogCapture log;
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
};

QTEST_GUILESS_MAIN(EmulatorPackageTest)
#include "EmulatorPackageTest.moc"
