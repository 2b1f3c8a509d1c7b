#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QSignalSpy>
#include <memory>

#include "fenk/settings/Settings.h"
#include "fenk/settings/SettingsFile.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace Fenk;
using TestSupport::readFile;
using TestSupport::Table;

namespace {

const char* const Description = R"({"groups":[
    {"key":"basic","name":"Basic","groups":[
        {"key":"path","options":[{"key":"","type":"text","default":""}]},
        {"key":"log","options":[{"key":"version","type":"text","default":"1"},{"key":"secret","type":"text"}]}]},
    {"key":"view","options":[{"key":"wide","type":"switch","default":true},
                             {"key":"size","type":"number","default":3},
                             {"key":"names","type":"list","default":["a"]}]}]})";

}  // namespace

class SettingsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TestSupport::TestHome> m_home;
    QString m_json;
    QString m_ini;

    std::unique_ptr<Settings> open() const { return Settings::fromJson(m_json, m_ini); }
    static QString text(const std::unique_ptr<Settings>& settings, const char* key) {
        return settings->getOption(key).toString();
    }
    static void compareViewWithDefaults(const std::unique_ptr<Settings>& settings) {
        QCOMPARE(settings->getOption("view.wide"), QVariant(true));
        QCOMPARE(settings->getOption("view.size").toInt(), 3);
        QCOMPARE(settings->getOption("view.names").toStringList(), QStringList("a"));
    }

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestSupport::TestHome>();
        m_json = m_home->write("description.json", Description);
        m_ini = m_home->path() + "/settings.conf";
    }

    void defaults() {
        const auto settings = open();
        QCOMPARE(settings->keys(), QStringList({"basic.path.", "basic.log.version", "basic.log.secret",
                                                "view.wide", "view.size", "view.names"}));
        QCOMPARE(settings->getOption("basic.path."), QVariant(QString()));
        QVERIFY(!settings->getOption("basic.log.secret").isValid());
        compareViewWithDefaults(settings);
        QVERIFY(settings->sync());
        QVERIFY(!QFile::exists(m_ini));
    }

    void wrongDescription() {
        m_home->write(
            "description.json",
            R"({"groups":[{"key":"a","options":[{"key":"b","type":"switch","default":"maybe"}]}]})");
        QString error;
        QVERIFY(!Settings::fromJson(m_json, m_ini, &error));
        QVERIFY(!error.isEmpty());
    }

    void roundTrip_data() {
        const Table<QString, QVariant> row("key", "value");
        row("key with a trailing point", "basic.path.", "/home/me/Desktop");
        row("blanks at the ends", "basic.log.version", "  a b  ");
        row("lines", "basic.log.version", "a\nb\r\n\tc");
        row("looks like syntax", "basic.log.version", "[x]\nkey=value # no ; comment");
        row("backslashes", "basic.log.version", "C:\\new\\table\\");
        row("Chinese and beyond", "basic.log.version", QString::fromUtf8("微信 🍷"));
        row("control, NUL, replacement", "basic.log.version",
            QString("a\x01") + QChar(0) + QChar(QChar::ReplacementCharacter) + QChar(0xd800));
        row("switch", "view.wide", false);
        row("fraction", "view.size", 0.1);
        row("list", "view.names", QStringList({"", "a,b", "\"c\"", QString::fromUtf8("龙")}));
        row("empty list", "view.names", QStringList());
    }
    void roundTrip() {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        auto settings = open();
        settings->setOption("basic.log.secret", "kept");
        settings->setOption(key, value);
        QVERIFY(settings->sync());
        settings = open();
        QCOMPARE(settings->getOption(key).toString(), value.toString());
        QCOMPARE(settings->getOption(key).toStringList(), value.toStringList());
        QCOMPARE(text(settings, "basic.log.secret"), QString("kept"));
    }

    void handWrittenFile() {
        m_home->write("settings.conf",
                      "\xef\xbb\xbf# mine\r\n\n[basic]\n log.version = 5 \nnot a line\n[other]\nx=1\n"
                      "[basic.path]\n=/p\n[view]\nwide=off\nwide=On\n");
        auto settings = open();
        QCOMPARE(text(settings, "basic.log.version"), QString("5"));
        QCOMPARE(text(settings, "basic.path."), QString("/p"));
        QCOMPARE(settings->getOption("view.wide").toBool(), true);
        settings->setOption("basic.log.secret", "s");
        settings->setOption("basic.path.", "/q");
        QVERIFY(settings->sync());
        QCOMPARE(readFile(m_ini),
                 QByteArray("# mine\n\n[basic]\n log.version = 5 \nlog.secret=s\nnot a line\n[other]\nx=1\n"
                            "[basic.path]\n=/q\n[view]\nwide=off\nwide=On\n"));
    }

    void wrongValuesMeanTheDefaults() {
        m_home->write("settings.conf", "[view]\nwide=perhaps\nsize=1e999x\nnames=a;b\n");
        compareViewWithDefaults(open());
    }

    void unusableFile_data() {
        const Table<QByteArray> row("bytes");
        row("binary", QByteArray("[basic]\nlog.version=9\n\0\1\2", 24));
        row("not UTF-8", "[basic]\nlog.version=\xff\xfe\n");
        row("prose", "this is no settings file\nat all\n");
        row("too long", "[basic]\n" + QByteArray(int(SettingsFile::MaxBytes), 'x'));
    }
    void unusableFile() {
        QFETCH(QByteArray, bytes);
        m_home->write("settings.conf", bytes);
        const auto settings = open();
        QCOMPARE(text(settings, "basic.log.version"), QString("1"));
        QCOMPARE(readFile(m_ini), bytes);  // nothing is touched before there is something to write
        settings->setOption("basic.log.version", "2");
        QVERIFY(settings->sync());
        QCOMPARE(readFile(m_ini + ".broken"), bytes);
        QCOMPARE(text(open(), "basic.log.version"), QString("2"));
    }

    void unwritableFile() {
        for (const QString& path : {m_home->write("file", "x") + "/settings.conf", m_home->path()}) {
            const auto settings = Settings::fromJson(m_json, path);
            settings->setOption("view.size", 4);
            QVERIFY(!settings->sync());
            QCOMPARE(settings->getOption("view.size").toInt(), 4);
        }
    }

    void refusals() {
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

    void writesByItself() {
        auto settings = open();
        settings->setOption("view.size", 5);
        QTRY_VERIFY(readFile(m_ini).contains("size=5"));
        settings->setOption("view.size", 6);
        settings.reset();
        QVERIFY(readFile(m_ini).contains("size=6"));
    }

    void foreignChangesStay() {
        const auto one = open();
        const auto two = open();
        one->setOption("view.size", 5);
        two->setOption("basic.log.version", "x");
        QVERIFY(one->sync() && two->sync());
        QCOMPARE(open()->getOption("view.size").toInt(), 5);
        // A file that vanished is written whole.
        QVERIFY(QFile::remove(m_ini));
        two->setOption("basic.log.secret", "y");
        QVERIFY(two->sync());
        QCOMPARE(text(open(), "basic.log.version"), QString("x"));
    }

    void killedWhileWriting() {
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
            const QByteArray before = readFile(m_ini);
            QTRY_VERIFY(readFile(m_ini) != before);
            QTest::qWait(round);  // any moment will do, another one each time
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
            const auto settings = open();
            QCOMPARE(text(settings, "basic.path."), longText + text(settings, "view.size"));
            settings->setOption("basic.log.version", QString::number(round));
            QVERIFY(settings->sync());
        }
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "SettingsTest.moc"
