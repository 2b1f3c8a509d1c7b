#include "backend/WhenDone.h"
#include "probes/DxChecker.h"
#include "probes/GraphicsSupport.h"
#include "support/EnvironmentGuard.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

/// The description of Mesa's software device; empty where it is not installed.
QByteArray softwareDevice() {
    const QDir directory("/usr/share/vulkan/icd.d");
    const QStringList names = directory.entryList({"lvp_icd*.json"});
    return names.isEmpty() ? QByteArray() : directory.filePath(names.first()).toUtf8();
}

void useDriver(EnvironmentGuard& environment, const QByteArray& description) {
    environment.set("VK_ICD_FILENAMES", description);
    environment.set("VK_DRIVER_FILES", description);
}

}  // namespace

class VulkanTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void softwareDeviceIsFound() {
        if (softwareDevice().isEmpty())
            QSKIP("needs mesa-vulkan-drivers");
        EnvironmentGuard environment;
        useDriver(environment, softwareDevice());
        const LogCapture log;
        const DxChecker checker;
        QVERIFY2(checker.isAvailable(), qPrintable(log.text()));
        QCOMPARE(checker.dxvkSupport(), DxvkSupportResult::Supportv2);
        QVERIFY2(log.contains("llvmpipe"), qPrintable(log.text()));
    }

    void noDevice() {
        EnvironmentGuard environment;
        useDriver(environment, "/nonexistent");
        const LogCapture log;
        const DxChecker checker;
        QVERIFY(!checker.isAvailable());
        QCOMPARE(checker.dxvkSupport(), DxvkSupportResult::DontSupport);
        QVERIFY(!checker.vkd3dSupport());
        QVERIFY(log.contains(QtWarningMsg, "Failed to create vulkan instance"));
    }

    void windowsAreToldLater() {
        EnvironmentGuard environment;
        useDriver(environment, softwareDevice().isEmpty() ? "/nonexistent" : softwareDevice());
        QVector<bool> answers;
        for (int caller = 0; caller < 2; ++caller)
            whenDone(this, GraphicsSupport::facts(), [&](const auto& facts) { answers << facts.available; });
        QVERIFY(answers.isEmpty());
        QTRY_COMPARE(answers, QVector<bool>(2, !softwareDevice().isEmpty()));
    }

    void drivers_data() {
        const Table<QString, bool> row("installed", "complete");
        row("only 64-bit", "amd64", false);
        row("both", "amd64 i386", true);
    }
    /// With tools that say what the machine has.
    void drivers() {
        QFETCH(QString, installed);
        const TestHome home;
        const auto tool = [&home](const char* name, const QString& script) {
            QFile file(home.write(QString("bin/%1").arg(name), "#!/bin/sh\n" + script.toUtf8()));
            QVERIFY(file.setPermissions(file.permissions() | QFile::ExeOwner));
        };
        tool("apt", "[ \"$*\" = 'policy libvulkan1:i386' ] && echo 'libvulkan1:i386:'");
        tool("lspci", "echo '00:02.0 VGA compatible controller: Some card'");
        tool("lscpu", "");
        tool("dpkg",
             QString("for word in \"$@\"; do case $word in -s) ;; *:*) case ' %1 ' in *\" ${word#*:} \"*)"
                     " ;; *) echo \"$word is missing\" >&2; exit 1 ;; esac ;; esac; done")
                 .arg(installed));
        EnvironmentGuard environment;
        environment.set("PATH", home.path().toUtf8() + "/bin:" + qgetenv("PATH"));
        const LogCapture log;
        QTEST(vulkanDriverComplete(), "complete");
        QFETCH(bool, complete);
        QCOMPARE(log.contains(QtWarningMsg, "dpkg -s failed mesa-vulkan-drivers:i386 is missing"), !complete);

        QTRY_COMPARE(GraphicsSupport::driverComplete().result(), complete);  // a no is asked again each time
    }
};

QTEST_GUILESS_MAIN(VulkanTest)
#include "VulkanTest.moc"
