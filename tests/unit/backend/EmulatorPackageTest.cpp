#include <QtTest>

#include "backend/EmulatorPackage.h"
#include "support/LogCapture.h"

using TestSupport::LogCapture;

class EmulatorPackageTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void describe_data() {
        QTest::addColumn<QString>("emulator");
        QTest::addColumn<QString>("pattern");  // asked of the package manager, empty: nothing
        QTest::addColumn<QString>("text");
        QTest::newRow("none in use") << ""
                                     << ""
                                     << "";
        QTest::newRow("known") << "box64"
                               << ""
                               << "lumora-box64 1.2";
        QTest::newRow("known by another name") << "exagear"
                                               << ""
                                               << "exagear-core-x64a64 1.2";
        QTest::newRow("found") << "fex"
                               << "*fex*"
                               << "fex-emu 1.2";
        QTest::newRow("not found") << "qemu9"
                                   << "*qemu9*"
                                   << "";
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
