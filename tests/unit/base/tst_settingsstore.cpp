#include <QTemporaryDir>
#include <QtTest>

#include "core/base/SettingsStore.h"

class TestSettingsStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void keysAndDefaults_data();
    void keysAndDefaults();
    void writesTheFile();

private:
    QTemporaryDir m_directory;
};

void TestSettingsStore::initTestCase() {
    qputenv("XDG_CONFIG_HOME", m_directory.path().toUtf8());
    QCoreApplication::setOrganizationName("lumora");
    QCoreApplication::setApplicationName("cellarix");
    QCOMPARE(settingsStore()->keys().size(), 6);
    QVERIFY(QFileInfo(m_directory.filePath("lumora/cellarix")).isDir());
}

void TestSettingsStore::keysAndDefaults_data() {
    QTest::addColumn<QVariant>("value");
    QTest::newRow("basic.deb_save_path.") << QVariant("");
    QTest::newRow("basic.update_log.version") << QVariant("");
    QTest::newRow("feedback.cfg.base_url") << QVariant();
    QTest::newRow("feedback.cfg.secret") << QVariant();
    QTest::newRow("client.base_url.") << QVariant("");
    QTest::newRow("bottles_configview.expand_toolbar.") << QVariant(true);
}

void TestSettingsStore::keysAndDefaults() {
    QVERIFY(settingsStore()->keys().contains(QTest::currentDataTag()));
    QTEST(settingsStore()->getOption(QTest::currentDataTag()), "value");
}

void TestSettingsStore::writesTheFile() {
    QCOMPARE(settingsStore(), settingsStore());
    settingsStore()->setOption("basic.update_log.version", "3.3.4.008");
    settingsStore()->setOption("bottles_configview.expand_toolbar.", false);
    settingsStore()->setOption("client.base_url.", "http://localhost:1/?a=b#c");
    QVERIFY(settingsStore()->sync());
    QFile file(m_directory.filePath("lumora/cellarix/settings.conf"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("[basic]\nupdate_log.version=3.3.4.008\n\n[client]\n"
                                        "base_url.=http://localhost:1/?a=b#c\n\n[bottles_configview]\n"
                                        "expand_toolbar.=false\n"));
}

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
