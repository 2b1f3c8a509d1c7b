#include <QtTest>

#include "core/base/SettingsStore.h"
#include "support/TestHome.h"

class SettingsStoreTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    /// The keys are those that other versions of the program write and read.
    void writesTheFile() {
        const TestSupport::TestHome home;
        QCoreApplication::setOrganizationName("lumora");
        QCoreApplication::setApplicationName("cellarix");
        QCOMPARE(settingsStore()->getOption("bottles_configview.expand_toolbar."), QVariant(true));
        QVERIFY(!settingsStore()->getOption("feedback.cfg.secret").isValid());
        for (const char* key : {"basic.deb_save_path.", "basic.update_log.version", "feedback.cfg.base_url",
                                "feedback.cfg.secret"})
            settingsStore()->setOption(key, "x");
        settingsStore()->setOption("bottles_configview.expand_toolbar.", false);
        settingsStore()->setOption("client.base_url.", "http://localhost:1/?a=b#c");
        QVERIFY(settingsStore()->sync());
        QCOMPARE(TestSupport::readFile(home.config() + "/lumora/cellarix/settings.conf"),
                 QByteArray("[basic]\ndeb_save_path.=x\nupdate_log.version=x\n\n[feedback]\ncfg.base_url=x\n"
                            "cfg.secret=x\n\n[client]\nbase_url.=http://localhost:1/?a=b#c\n\n"
                            "[bottles_configview]\nexpand_toolbar.=false\n"));
    }
};

QTEST_GUILESS_MAIN(SettingsStoreTest)
#include "SettingsStoreTest.moc"
