#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include "fenk/Settings.h"
#include "fenk/SettingsFile.h"

using namespace Fenk;

namespace {

const char* const Description = R"({"groups":[
    {"key":"basic","name":"Basic","groups":[
        {"key":"path","options":[{"key":"","type":"text","default":""}]},
        {"key":"log","options":[{"key":"version","type":"text","default":"1"},{"key":"secret","type":"text"}]}]},
    {"key":"view","options":[{"key":"wide","type":"switch","default":true},
                             {"key":"size","type":"number","default":3},
                             {"key":"names","type":"list","default":["a"]}]}]})";

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeAll(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

}  // namespace

class TestSettings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void defaults();
    void wrongDescriptions_data();
    void wrongDescriptions();
    void roundTrip_data();
    void roundTrip();
    void handWrittenFile();
    void wrongValues_data();
    void wrongValues();
    void unusableFile_data();
    void unusableFile();
    void unwritableFile();
    void refusals();
    void writesByItself();
    void foreignChangesStay();
    void killedWhileWriting();

private:
    std::unique_ptr<Settings> open() { return Settings::fromJson(m_json, m_ini); }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_json;
    QString m_ini;
};

void TestSettings::init() {
    m_directory = std::make_unique<QTemporaryDir>();
    m_json = m_directory->filePath("description.json");
    m_ini = m_directory->filePath("settings.conf");
    writeAll(m_json, Description);
}

void TestSettings::defaults() {
    const auto settings = open();
    QCOMPARE(settings->keys(), QStringList({"basic.path.", "basic.log.version", "basic.log.secret",
                                            "view.wide", "view.size", "view.names"}));
    QCOMPARE(settings->getOption("basic.path."), QVariant(QString()));
    QCOMPARE(settings->getOption("basic.log.version").toString(), QString("1"));
    QVERIFY(!settings->getOption("basic.log.secret").isValid());
    QCOMPARE(settings->getOption("view.wide"), QVariant(true));
    QCOMPARE(settings->getOption("view.size").toInt(), 3);
    QCOMPARE(settings->getOption("view.names").toStringList(), QStringList("a"));
    QVERIFY(settings->sync());
    QVERIFY(!QFile::exists(m_ini));
}

void TestSettings::wrongDescriptions_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no JSON") << QByteArray("{");
    QTest::newRow("list") << QByteArray("[]");
    QTest::newRow("unknown type") << QByteArray(
        R"({"groups":[{"key":"a","options":[{"key":"b","type":"date"}]}]})");
    QTest::newRow("group without key") << QByteArray(R"({"groups":[{"options":[]}]})");
    QTest::newRow("option without key")
        << QByteArray(R"({"groups":[{"key":"a","options":[{"type":"text"}]}]})");
    QTest::newRow("twice") << QByteArray(
        R"({"groups":[{"key":"a","options":[{"key":"b","type":"text"},{"key":"b","type":"text"}]}]})");
    QTest::newRow("wrong default") << QByteArray(
        R"({"groups":[{"key":"a","options":[{"key":"b","type":"switch","default":"maybe"}]}]})");
    QTest::newRow("key that no file can hold")
        << QByteArray(R"({"groups":[{"key":"a","options":[{"key":"b=c","type":"text"}]}]})");
}

void TestSettings::wrongDescriptions() {
    QFETCH(QByteArray, json);
    writeAll(m_json, json);
    QString error;
    QVERIFY(!Settings::fromJson(m_json, m_ini, &error));
    QVERIFY(!error.isEmpty());
}

void TestSettings::roundTrip_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    const auto text = [](const char* name, const QString& value, const char* key = "basic.log.version") {
        QTest::newRow(name) << QString(key) << QVariant(value);
    };
    text("key with a trailing point", "/home/me/Desktop", "basic.path.");
    text("empty", "");
    text("blanks at the ends", "  a b  ");
    text("lines", "a\nb\r\n\tc");
    text("looks like syntax", "[x]\nkey=value # no ; comment");
    text("backslashes", "C:\\new\\table\\");
    text("Chinese and beyond", QString::fromUtf8("微信 🍷"));
    text("control, NUL, replacement",
         QString("a\x01") + QChar(0) + QChar(QChar::ReplacementCharacter) + QChar(0xd800));
    QTest::newRow("switch") << "view.wide" << QVariant(false);
    QTest::newRow("number") << "view.size" << QVariant(-7);
    QTest::newRow("fraction") << "view.size" << QVariant(0.1);
    QTest::newRow("list") << "view.names"
                          << QVariant(QStringList({"", "a,b", "\"c\"", QString::fromUtf8("龙")}));
    QTest::newRow("empty list") << "view.names" << QVariant(QStringList());
}

void TestSettings::roundTrip() {
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    auto settings = open();
    settings->setOption("basic.log.secret", "kept");
    settings->setOption(key, value);
    QVERIFY(settings->sync());
    settings = open();
    QCOMPARE(settings->getOption(key).toString(), value.toString());
    QCOMPARE(settings->getOption(key).toStringList(), value.toStringList());
    QCOMPARE(settings->getOption("basic.log.secret").toString(), QString("kept"));
}

void TestSettings::handWrittenFile() {
    writeAll(
        m_ini,
        "\xef\xbb\xbf# mine\r\n\n[basic]\n log.version = 5 \nnot a line\n[other]\nx=1\n[basic.path]\n=/p\n"
        "[view]\nwide=off\nwide=On\n");
    auto settings = open();
    QCOMPARE(settings->getOption("basic.log.version").toString(), QString("5"));
    QCOMPARE(settings->getOption("basic.path.").toString(), QString("/p"));
    QCOMPARE(settings->getOption("view.wide").toBool(), true);
    settings->setOption("basic.log.secret", "s");
    settings->setOption("basic.path.", "/q");
    QVERIFY(settings->sync());
    QCOMPARE(readAll(m_ini), QByteArray("# mine\n\n[basic]\n log.version = 5 \nlog.secret=s\nnot a "
                                        "line\n[other]\nx=1\n[basic.path]\n=/q\n"
                                        "[view]\nwide=off\nwide=On\n"));
}

void TestSettings::wrongValues_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("switch") << QByteArray("wide=perhaps");
    QTest::newRow("number") << QByteArray("size=1e999x");
    QTest::newRow("list") << QByteArray("names=a;b");
    QTest::newRow("nothing") << QByteArray("size=");
}

void TestSettings::wrongValues() {
    QFETCH(QByteArray, line);
    writeAll(m_ini, "[view]\n" + line + "\n");
    const auto settings = open();
    QCOMPARE(settings->getOption("view.wide"), QVariant(true));
    QCOMPARE(settings->getOption("view.size").toInt(), 3);
    QCOMPARE(settings->getOption("view.names").toStringList(), QStringList("a"));
}

void TestSettings::unusableFile_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("binary") << QByteArray("[basic]\nlog.version=9\n\0\1\2", 24);
    QTest::newRow("not UTF-8") << QByteArray("[basic]\nlog.version=\xff\xfe\n");
    QTest::newRow("prose") << QByteArray("this is no settings file\nat all\n");
    QTest::newRow("too long") << QByteArray("[basic]\n" + QByteArray(int(SettingsFile::MaxBytes), 'x'));
}

void TestSettings::unusableFile() {
    QFETCH(QByteArray, bytes);
    writeAll(m_ini, bytes);
    auto settings = open();
    QCOMPARE(settings->getOption("basic.log.version").toString(), QString("1"));
    QCOMPARE(readAll(m_ini), bytes);  // nothing is touched before there is something to write
    settings->setOption("basic.log.version", "2");
    QVERIFY(settings->sync());
    QCOMPARE(readAll(m_ini + ".broken"), bytes);
    QCOMPARE(open()->getOption("basic.log.version").toString(), QString("2"));
}

void TestSettings::unwritableFile() {
    writeAll(m_directory->filePath("file"), "x");
    for (const QString& path : {m_directory->filePath("file") + "/settings.conf", m_directory->path()}) {
        const auto settings = Settings::fromJson(m_json, path);
        settings->setOption("view.size", 4);
        QVERIFY(!settings->sync());
        QCOMPARE(settings->getOption("view.size").toInt(), 4);
    }
}

void TestSettings::refusals() {
    const auto settings = open();
    QSignalSpy changed(settings.get(), &Settings::valueChanged);
    QVERIFY(!settings->getOption("no.such").isValid());
    settings->setOption("no.such", 1);
    settings->setOption("view.size", "many");
    settings->setOption("view.wide", QVariant());
    settings->setOption("view.wide", true);  // as before
    QCOMPARE(changed.size(), 0);
    settings->setOption("view.wide", "false");
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0), QVariantList({"view.wide", false}));
}

void TestSettings::writesByItself() {
    {
        const auto settings = open();
        settings->setOption("view.size", 5);
        QTRY_VERIFY(readAll(m_ini).contains("size=5"));
        settings->setOption("view.size", 6);
    }
    QVERIFY(readAll(m_ini).contains("size=6"));
}

void TestSettings::foreignChangesStay() {
    const auto one = open();
    const auto two = open();
    one->setOption("view.size", 5);
    two->setOption("basic.log.version", "x");
    QVERIFY(one->sync());
    QVERIFY(two->sync());
    QCOMPARE(open()->getOption("view.size").toInt(), 5);
    // A file that vanished is written whole.
    QVERIFY(QFile::remove(m_ini));
    two->setOption("basic.log.secret", "y");
    QVERIFY(two->sync());
    QCOMPARE(open()->getOption("basic.log.version").toString(), QString("x"));
}

void TestSettings::killedWhileWriting() {
    const QString longText(20000, 'x');
    for (int round = 0; round < 8; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto settings = open();
            for (int i = 0;; ++i) {
                settings->setOption("view.size", i);
                settings->setOption("basic.path.", longText + QString::number(i));
                settings->sync();
            }
        }
        const QByteArray before = readAll(m_ini);
        QTRY_VERIFY(readAll(m_ini) != before);
        QTest::qWait(round);  // any moment will do, another one each time
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const auto settings = open();
        QCOMPARE(settings->getOption("basic.path.").toString(),
                 longText + settings->getOption("view.size").toString());
        settings->setOption("basic.log.version", QString::number(round));
        QVERIFY(settings->sync());
    }
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
