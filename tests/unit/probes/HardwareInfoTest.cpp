#include <QtTest>

#include "probes/HardwareInfo.h"

class HardwareInfoTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void graphicsDevices_data() {
        QTest::addColumn<QStringList>("devices");
        QTest::newRow("none") << QStringList();
        QTest::newRow("hybrid") << QStringList{
            "Intel Corporation CoffeeLake-H GT2 [UHD Graphics 630] (prog-if 00 [VGA controller])|i915",
            "NVIDIA Corporation GP107M [GeForce GTX 1050 Ti Mobile] (rev a1)|nvidia"};
        QTest::newRow("domains") << QStringList{
            "Advanced Micro Devices, Inc. [AMD/ATI] Navi 24 [Radeon RX 6400/6500 XT/6500M] (rev c7)|",
            "Red Hat, Inc. QXL paravirtual graphic card (rev 05) (prog-if 00 [VGA controller])|qxl"};
    }
    void graphicsDevices() {
        QFile capture(QString(LSPCI_DIR "/%1.txt").arg(QTest::currentDataTag()));
        QVERIFY(capture.open(QIODevice::ReadOnly));
        QStringList devices;
        for (const QJsonValue& device : parseGraphicsDevices(capture.readAll()))
            devices.append(device["gpu"].toString() + "|" + device["module"].toString());
        QTEST(devices, "devices");
    }

    void texts() {
        QCOMPARE(
            parseCpuModel("Architecture:   x86_64\nModel name:    A: B @ 2 GHz \nBIOS Model name: other\n"),
            QString("A: B @ 2 GHz"));
        QCOMPARE(upstreamVersion("1:21.2.6-1"), QString("21.2.6"));
    }

    void thisMachine() {
        const QJsonObject machine = machineInfo();
        QCOMPARE(machine.keys(), QStringList({"arch", "hardware", "machine_id", "os"}));
        QCOMPARE(machine["hardware"].toObject().keys(), QStringList({"cpu", "gpus", "mesa", "nvidia"}));
        QVERIFY(machine["hardware"]["gpus"].isArray());
    }
};

QTEST_GUILESS_MAIN(HardwareInfoTest)
#include "HardwareInfoTest.moc"
