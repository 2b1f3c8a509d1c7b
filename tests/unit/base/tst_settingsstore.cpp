#include "core/base/SettingsStore.h"
#include "support/Table.h"
#include "support/TestHome.h"

class TestSettingsStore : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void keysAndDefaults_data() {
        QCoreApplication::setOrganizationName("lumora");
        QCoreApplication::setApplicationName("cellarix");
        const TestSupport::Table<QVariant> row("value");
        row("basic.deb_save_path.", "");
        row("basic.update_log.version", "");
        row("feedback.cfg.base_url", {});
        row("feedback.cfg.secret", {});
        row("client.base_url.", "");
        row("bottles_configview.expand_toolbar.", true);
    }
    void keysAndDefaults() {
        QCOMPARE(settingsStore()->keys().size(), 6);
        QVERIFY(settingsStore()->keys().contains(QTest::currentDataTag()));
        QTEST(settingsStore()->getOption(QTest::currentDataTag()), "value");
    }

    void writesTheFile() {
        settingsStore()->setOption("basic.update_log.version", "3.3.4.008");
        settingsStore()->setOption("bottles_configview.expand_toolbar.", false);
        settingsStore()->setOption("client.base_url.", "http://localhost:1/?a=b#c");
        QVERIFY(settingsStore()->sync());
        QCOMPARE(TestSupport::readFile(m_home.config() + "/lumora/cellarix/settings.conf"),
                 QByteArray("[basic]\nupdate_log.version=3.3.4.008\n\n[client]\n"
                            "base_url.=http://localhost:1/?a=b#c\n\n[bottles_configview]\n"
                            "expand_toolbar.=false\n"));
    }
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
