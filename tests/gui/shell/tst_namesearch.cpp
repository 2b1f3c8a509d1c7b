#include <QtTest>

#include "shell/library/NameSearch.h"

using namespace NameSearch;

class TestNameSearch : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void lists() {
        QCOMPARE(pinyinList("微A1信"), QStringList({"wei", "A", "1", "xin"}));
        QCOMPARE(pinyinList(""), QStringList());
        QCOMPARE(pinyinList("\u9fa5\u9fa6"), QStringList({"yu", "\u9fa6"}));
    }

    void matches_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("keyword");
        QTest::addColumn<bool>("found");
        QTest::newRow("pinyin") << "微信"
                                << "weixin" << true;
        QTest::newRow("capitals") << "微信"
                                  << "WeiX" << true;
        QTest::newRow("initials") << "微信"
                                  << "wx" << true;
        QTest::newRow("order") << "微信"
                               << "xinwei" << false;
        QTest::newRow("Chinese, others between") << "企业微工作信"
                                                 << "微信" << true;
        QTest::newRow("Chinese in order") << "信微"
                                          << "微信" << false;
        QTest::newRow("same sound, other character") << "威信"
                                                     << "微信" << false;
        QTest::newRow("mixed") << "网易云音乐"
                               << "网yiyue" << true;
        QTest::newRow("v for ü") << "绿茶"
                                 << "lvcha" << true;
        QTest::newRow("letters left out") << "Harbour Office"
                                          << "hoff" << true;
        QTest::newRow("no such letter") << "Harbour Office"
                                        << "hz" << false;
        QTest::newRow("text, not a pattern") << "Notepad++ (x64)"
                                             << "++(" << true;
        QTest::newRow("a point is a point") << "Editor"
                                            << "." << false;
        QTest::newRow("a syllable is not its letters") << "Wind ei"
                                                       << "微" << false;
        QTest::newRow("Greek capitals") << "ΣΊΣΥΦΟΣ"
                                        << "σίσυφος" << true;
        QTest::newRow("all") << ""
                             << "" << true;
    }
    void matches() {
        QFETCH(QString, name);
        QFETCH(QString, keyword);
        QFETCH(bool, found);
        QCOMPARE(Keyword(keyword).matches(Name(name)), found);
    }
};

QTEST_APPLESS_MAIN(TestNameSearch)
#include "tst_namesearch.moc"
