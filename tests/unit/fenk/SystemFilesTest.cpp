#include <thread>
#include <vector>

#include "fenk/system/Chinese2Pinyin.h"
#include "fenk/system/DesktopEntry.h"
#include "fenk/system/SystemInfo.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace Fenk;
using TestSupport::Table;

class SystemFilesTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void desktopEntry_data() {
        const Table<QByteArray, int, QString> row("bytes", "status", "name");
        const auto good = [&row](const char* tag, const QByteArray& bytes, const char* name) {
            row(tag, bytes, DesktopEntry::NoError, name);
        };
        const auto bad = [&row](const char* tag, const QByteArray& bytes, const char* name) {
            row(tag, bytes, DesktopEntry::FormatError, name);
        };
        good("comment", "# c\n\n[Desktop Entry]\nName=A\n", "A");
        good("blanks, DOS ends, no last end", "[Desktop Entry]\r\n Name = A b \r", "A b");
        good("value with syntax", "[Desktop Entry]\nName=[A]=#b\n", "[A]=#b");
        good("empty value", "[Desktop Entry]\nName=\n", "");
        bad("first of two keys", "[Desktop Entry]\nName=A\nName=B\n", "A");
        bad("group twice", "[Desktop Entry]\nX=1\n[Desktop Entry]\nName=A\n", "A");
        bad("entry before groups", "Name=B\n[Desktop Entry]\nName=A\n", "A");
        bad("prose", "[Desktop Entry]\nhello\nName=A\n", "A");
        bad("bad key", "[Desktop Entry]\nNa me=B\nName=A\n", "A");
        bad("other group only", "[Other]\nName=A\n", "none");
        bad("binary", QByteArray("\0\xff[\x01", 4), "none");
        bad("NUL at the end", QByteArray("[Desktop Entry]\nName=A\n\0", 24), "A");
        row("too long", "[Desktop Entry]\nName=A\n" + QByteArray(1 << 20, '#'), DesktopEntry::AccessError,
            "none");
    }
    void desktopEntry() {
        QFETCH(QByteArray, bytes);
        const DesktopEntry entry(m_home.write("a.desktop", bytes));
        QTEST(int(entry.status()), "status");
        QTEST(entry.stringValue("Name", "Desktop Entry", "none"), "name");
    }

    void desktopEntryValues() {
        const DesktopEntry entry(
            m_home.write("b.desktop",
                         "[Desktop Entry]\nName=Wine\nName[zh]=Jiu\nName[zh_CN]=\xe9\x85\x92\n"
                         "Comment=a\\sb\\nc\\\\d\\x\nExec=env \"A=b\" wine C:\\\\\\\\x.exe %U\n"
                         "MimeType=a/b;c\\;d;e\n[Desktop Action New]\nName=New\n"));
        QCOMPARE(entry.status(), DesktopEntry::NoError);
        QCOMPARE(entry.allGroups(), QStringList({"Desktop Entry", "Desktop Action New"}));
        QCOMPARE(entry.keys().first(), QString("Name"));
        QCOMPARE(entry.stringValue("Comment"), QString("a b\nc\\d\\x"));
        QCOMPARE(entry.stringValue("Exec"), QString("env \"A=b\" wine C:\\\\x.exe %U"));
        QCOMPARE(entry.stringListValue("MimeType"), QStringList({"a/b", "c;d", "e"}));
        QCOMPARE(entry.stringValue("Name", "Desktop Action New"), QString("New"));
        for (const auto& [locale, name] : {std::pair("zh_CN", "酒"), {"zh_TW", "Jiu"}, {"de_DE", "Wine"}})
            QCOMPARE(entry.localizedValue("Name", "Desktop Entry", "", QLocale(locale)), QString(name));
        QCOMPARE(DesktopEntry("/no/such").status(), DesktopEntry::AccessError);
        QCOMPARE(DesktopEntry("/").status(), DesktopEntry::AccessError);
    }

    void systemInfo() {
        const auto told = [this](const QByteArray& version, const QByteArray& release) {
            const SystemInfo info(m_home.write("os-version", version), m_home.write("os-release", release));
            return QStringList({info.productType(), info.systemName(), info.editionName(),
                                info.majorVersion(), info.minorVersion()});
        };
        const QByteArray release = "# x\nID='a b'\nNAME=\"A \\\"B\\\"\"\nVERSION_ID=22.04.1\nNAME=C";
        QCOMPARE(told("MajorVersion=\n", release), QStringList({"a b", "A \"B\"", "", "22", "04.1"}));
        QCOMPARE(
            told("[Version]\nSystemName=Home\nProductType=Desktop\nEditionName=Community\nMajorVersion=20\n"
                 "MinorVersion=1060\n",
                 release),
            QStringList({"Desktop", "Home", "Community", "20", "1060"}));
        QCOMPARE(told(QByteArray("\xff\0=\n=x", 6), "\""), QStringList({"", "", "", "", ""}));
        QCOMPARE(SystemInfo("/no/such", "/no/such").systemName(), QString());
    }

    void pinyin_data() {
        const Table<QString, QString> row("pinyin", "letters");
        row("QQ音乐 2.0", "QQyinle 2.0", "QQyl 2.0");
        row("绿色", "lvse", "ls");
        row("企业微信", "qiyeweixin", "qywx");
        row("龍", "long", "l");
        row("𠮷", "𠮷", "𠮷");
        row("naïve ü あ", "naïve ü あ", "naïve ü あ");
    }
    void pinyin() {
        QTEST(Chinese2Pinyin(QTest::currentDataTag()), "pinyin");
        QTEST(firstLetters(QTest::currentDataTag()), "letters");
    }

    void pinyinFromManyThreads() {
        std::vector<std::thread> threads;
        std::atomic_int wrong{0};
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&wrong] {
                for (uint c = 0x4e00; c < 0x4f00; ++c)
                    wrong += Chinese2Pinyin(QString::fromUcs4(&c, 1)).isEmpty();
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(int(wrong), 0);
    }
};

QTEST_GUILESS_MAIN(SystemFilesTest)
#include "SystemFilesTest.moc"
