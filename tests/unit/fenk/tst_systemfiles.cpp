#include <QTemporaryDir>
#include <QtTest>
#include <thread>
#include <vector>

#include "fenk/Chinese2Pinyin.h"
#include "fenk/DesktopEntry.h"
#include "fenk/Singleton.h"
#include "fenk/SystemInfo.h"

using namespace Fenk;

namespace {

class Counter : public QObject, public Singleton<Counter> {
    friend class Singleton<Counter>;
    Counter() { ++made; }

public:
    static std::atomic_int made;
};
std::atomic_int Counter::made{0};

}  // namespace

class TestSystemFiles : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void desktopEntry_data();
    void desktopEntry();
    void desktopEntryValues();
    void systemInfo_data();
    void systemInfo();
    void pinyin_data();
    void pinyin();
    void pinyinFromManyThreads();
    void singletonIsMadeOnce();

private:
    QString write(const QString& name, const QByteArray& bytes) {
        QFile file(m_directory.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write the sample");
        return file.fileName();
    }

    QTemporaryDir m_directory;
};

void TestSystemFiles::desktopEntry_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const QByteArray& bytes, DesktopEntry::Status status,
                        const QString& name) { QTest::newRow(title) << bytes << int(status) << name; };
    row("plain", "# c\n\n[Desktop Entry]\nName=A\n", DesktopEntry::NoError, "A");
    row("blanks and DOS ends", "[Desktop Entry]\r\n Name = A b \r\n", DesktopEntry::NoError, "A b");
    row("no end of line", "[Desktop Entry]\nName=A", DesktopEntry::NoError, "A");
    row("value with syntax", "[Desktop Entry]\nName=[A]=#b\n", DesktopEntry::NoError, "[A]=#b");
    row("empty value", "[Desktop Entry]\nName=\n", DesktopEntry::NoError, "");
    row("first of two keys", "[Desktop Entry]\nName=A\nName=B\n", DesktopEntry::FormatError, "A");
    row("group twice", "[Desktop Entry]\nX=1\n[Desktop Entry]\nName=A\n", DesktopEntry::FormatError, "A");
    row("entry before groups", "Name=B\n[Desktop Entry]\nName=A\n", DesktopEntry::FormatError, "A");
    row("prose", "[Desktop Entry]\nhello\nName=A\n", DesktopEntry::FormatError, "A");
    row("bad key", "[Desktop Entry]\nNa me=B\nName=A\n", DesktopEntry::FormatError, "A");
    row("other group only", "[Other]\nName=A\n", DesktopEntry::FormatError, "none");
    row("empty file", "", DesktopEntry::FormatError, "none");
    row("binary", QByteArray("\0\xff[\x01", 4), DesktopEntry::FormatError, "none");
    row("NUL at the end", QByteArray("[Desktop Entry]\nName=A\n\0", 24), DesktopEntry::FormatError, "A");
    row("too long", "[Desktop Entry]\nName=A\n" + QByteArray(1 << 20, '#'), DesktopEntry::AccessError,
        "none");
}

void TestSystemFiles::desktopEntry() {
    QFETCH(QByteArray, bytes);
    const DesktopEntry entry(write("a.desktop", bytes));
    QTEST(int(entry.status()), "status");
    QTEST(entry.stringValue("Name", "Desktop Entry", "none"), "name");
}

void TestSystemFiles::desktopEntryValues() {
    const DesktopEntry entry(write("b.desktop",
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
    const auto localized = [&](const QLocale& locale) {
        return entry.localizedValue("Name", "Desktop Entry", "", locale);
    };
    QCOMPARE(localized(QLocale(QLocale::Chinese, QLocale::China)), QString::fromUtf8("酒"));
    QCOMPARE(localized(QLocale(QLocale::Chinese, QLocale::Taiwan)), QString("Jiu"));
    QCOMPARE(localized(QLocale(QLocale::German)), QString("Wine"));
    QCOMPARE(DesktopEntry("/no/such").status(), DesktopEntry::AccessError);
    QCOMPARE(DesktopEntry("/").status(), DesktopEntry::AccessError);
}

void TestSystemFiles::systemInfo_data() {
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QByteArray>("release");
    QTest::addColumn<QStringList>("expected");
    const QByteArray debian =
        "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nNAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n"
        "VERSION_CODENAME=bookworm\nID=debian\n";
    QTest::newRow("release only") << QByteArray() << debian
                                  << QStringList({"debian", "Debian GNU/Linux", "bookworm", "12", ""});
    QTest::newRow("both") << QByteArray(
                                 "[Version]\nSystemName=Home\nProductType=Desktop\nEditionName=Community\n"
                                 "MajorVersion=20\nMinorVersion=1060\n")
                          << debian << QStringList({"Desktop", "Home", "Community", "20", "1060"});
    QTest::newRow("point and quotes")
        << QByteArray("# x\nMajorVersion=\n")
        << QByteArray("ID='a b'\nNAME=\"A \\\"B\\\"\"\nVERSION_ID=22.04.1\nNAME=C")
        << QStringList({"a b", "A \"B\"", "", "22", "04.1"});
    QTest::newRow("garbage") << QByteArray("\xff\0=\n=x", 6) << QByteArray("\"")
                             << QStringList({"", "", "", "", ""});
}

void TestSystemFiles::systemInfo() {
    QFETCH(QByteArray, version);
    QFETCH(QByteArray, release);
    const SystemInfo info(write("os-version", version), write("os-release", release));
    QTEST(QStringList({info.productType(), info.systemName(), info.editionName(), info.majorVersion(),
                       info.minorVersion()}),
          "expected");
    QCOMPARE(SystemInfo("/no/such", "/no/such").systemName(), QString());
}

void TestSystemFiles::pinyin_data() {
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("pinyin");
    QTest::addColumn<QString>("letters");
    const auto row = [](const char* words, const char* pinyin, const char* letters) {
        QTest::newRow(words) << QString::fromUtf8(words) << QString::fromUtf8(pinyin)
                             << QString::fromUtf8(letters);
    };
    row("", "", "");
    row("微信", "weixin", "wx");
    row("QQ音乐 2.0", "QQyinle 2.0", "QQyl 2.0");
    row("绿色", "lvse", "ls");
    row("女", "nv", "n");
    row("略", "lve", "l");
    row("企业微信", "qiyeweixin", "qywx");
    row("龍", "long", "l");
    row("𠮷", "𠮷", "𠮷");
    row("naïve ü あ", "naïve ü あ", "naïve ü あ");
}

void TestSystemFiles::pinyin() {
    QFETCH(QString, words);
    QTEST(Chinese2Pinyin(words), "pinyin");
    QTEST(firstLetters(words), "letters");
}

void TestSystemFiles::pinyinFromManyThreads() {
    std::vector<std::thread> threads;
    std::atomic_int wrong{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&wrong, i] {
            for (uint c = 0x4e00; c < 0x4f00; ++c)
                wrong += Chinese2Pinyin(QString::fromUcs4(&c, 1)).isEmpty() || i < 0;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(int(wrong), 0);
}

void TestSystemFiles::singletonIsMadeOnce() {
    QCOMPARE(int(Counter::made), 0);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] { Counter::instance(); });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(int(Counter::made), 1);
}

QTEST_GUILESS_MAIN(TestSystemFiles)
#include "tst_systemfiles.moc"
