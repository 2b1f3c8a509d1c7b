#include <QtTest>

#include "programs/NameSearch.h"
#include "support/Table.h"

using TestSupport::Table;

using namespace NameSearch;

class NameSearchTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void lists() {
        QCOMPARE(pinyinList("微A1信"), QStringList({"wei", "A", "1", "xin"}));
        QCOMPARE(pinyinList(""), QStringList());
        QCOMPARE(pinyinList("\u9fa5\u9fa6"), QStringList({"yu", "\u9fa6"}));
    }

    void matches_data() {
        const Table<QString, QString, bool> row("name", "keyword", "found");
        row("pinyin", "微信", "weixin", true);
        row("initials", "微信", "wx", true);
        row("order", "微信", "xinwei", false);
        row("Chinese, others between", "企业微工作信", "微信", true);
        row("Chinese in order", "信微", "微信", false);
        row("same sound, other character", "威信", "微信", false);
        row("mixed", "网易云音乐", "网yiyue", true);
        row("v for ü", "绿茶", "lvcha", true);
        row("letters left out", "Harbour Office", "hoff", true);
        row("text, not a pattern", "Notepad++ (x64)", "++(", true);
        row("a point is a point", "Editor", ".", false);
        row("a syllable is not its letters", "Wind ei", "微", false);
        row("Greek capitals", "ΣΊΣΥΦΟΣ", "σίσυφος", true);
        row("all", "", "", true);
    }
    void matches() {
        QFETCH(QString, name);
        QFETCH(QString, keyword);
        QFETCH(bool, found);
        QCOMPARE(Keyword(keyword).matches(Name(name)), found);
    }
};

QTEST_APPLESS_MAIN(NameSearchTest)
#include "NameSearchTest.moc"
