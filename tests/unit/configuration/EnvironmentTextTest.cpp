#include <random>

#include "shell/configuration/parameters/EntryParameters.h"
#include "shell/configuration/parameters/EnvironmentText.h"
#include "support/EnvironmentModel.h"
#include "support/Table.h"

using EnvironmentText::Parsed;
using TestSupport::Table;
using Values = QMap<QString, QString>;

class EnvironmentTextTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data() {
        const Table<QString, Values, QString> row("text", "values", "faults");
        row("pairs", "A=1 B='x y'", {{"A", "1"}, {"B", "x y"}}, "");
        row("white space", "\tA=1\r\n\v\fB=2 ", {{"A", "1"}, {"B", "2"}}, "");
        row("wide spaces", QString::fromUtf8("A=1\u0085B=2\u00a0C=3\u3000D=4"),
            {{"A", "1"}, {"B", "2"}, {"C", "3"}, {"D", "4"}}, "");
        row("later", "A=1 B=2 A=3", {{"A", "3"}, {"B", "2"}}, "");
        row("quotes within", "A=a'b \"c'd\"e 'f\"", {{"A", "ab \"cde 'f"}}, "");
        row("backslashes", "A=a\\ b B='it\\'s' C=C:\\\\x D=\\",
            {{"A", "a b"}, {"B", "it's"}, {"C", "C:\\x"}, {"D", "\\"}}, "");
        row("number first", "1A=2", {{"1A", "2"}}, "error");
        row("letters", QString::fromUtf8("größe=1 变量=2"),
            {{QString::fromUtf8("größe"), "1"}, {QString::fromUtf8("变量"), "2"}}, "");
        row("beyond 16 bits", QString::fromUtf8("😀=1"), {{QString::fromUtf8("😀"), "1"}}, "error");
        row("quoted name", "'A B'=1", {{"B'", "1"}}, "error left:'A");
        row("word", "A=1 word C=2", {{"A", "1"}, {"C", "2"}}, "left:word");
        row("no name", "=1 B=2", {{"B", "2"}}, "left:=1");
        row("last word", "A=1 B", {{"A", "1"}}, "left:B");
        row("open quote", "A='x y", {{"A", "x y"}}, "open");
    }
    void parse() {
        QFETCH(QString, text);
        const Parsed parsed = EnvironmentText::parse(text);
        QTEST(parsed.values, "values");
        QStringList faults;
        if (parsed.error)
            faults << "error";
        if (!parsed.leftOut.isEmpty())
            faults << "left:" + parsed.leftOut;
        if (parsed.openQuote)
            faults << "open";
        QTEST(faults.join(' '), "faults");
    }

    void anyText() {
        const QString alphabet = QString::fromUtf8("AB1_==  \t\u0085\u3000''\"\"\\\\-é😀");
        std::mt19937 random(1);
        for (int round = 0; round < 20000; ++round) {
            QString text;
            for (int length = int(random() % 24); length > 0; --length)
                text += alphabet[int(random() % unsigned(alphabet.size()))];
            const Parsed parsed = EnvironmentText::parse(text);
            const TestSupport::EnvironmentModel expected(text);
            QVERIFY2(parsed.values == expected.values && parsed.error == expected.badName, qPrintable(text));
        }
    }

    void records_data() {
        const Table<QJsonObject, QString, QString, QJsonObject> row("read", "text", "edited", "saved");
        const QJsonObject blanks = {{"A", "1"}, {"B", " x y "}, {"C", "C:\\x"}};
        row("sorted, trimmed", {{"B", " 2\t"}, {"A", "1"}}, "A=1 B=2", "A=1 B=3", {{"A", "1"}, {"B", "3"}});
        row("untouched", blanks, "A=1 B=x y C=C:\\x", "A=1 B=x y C=C:\\x", blanks);
        row("with quotes", blanks, "A=1 B=x y C=C:\\x", "A=1 B='x y'", {{"A", "1"}, {"B", "x y"}});
        row("faulty names", {}, "", "1A=2 B=3", {{"1A", "2"}, {"B", "3"}});
    }
    void records() {
        QFETCH(QJsonObject, read);
        EntryParameters entry({{"id", "u1"}, {"name", "n"}, {"arguments", "-a  'b'"}, {"envs", read}});
        QCOMPARE(entry.arguments, QString("-a  'b'"));
        QVERIFY(entry.channels.isEmpty() && entry.logPath.isEmpty());
        QTEST(entry.environment, "text");
        QFETCH(QString, edited);
        entry.environment = edited;
        QFETCH(QJsonObject, saved);
        QCOMPARE(entry.toRecord(), (QJsonObject{{"id", "u1"}, {"arguments", "-a  'b'"}, {"envs", saved}}));
    }

    /// Another window or the service changes the record while the texts are shown.
    void newerRecord_data() {
        const Table<QString, QString, QString, QString, bool> row(
            "arguments", "environment", "argumentsAfter", "environmentAfter", "isEdited");
        row("nothing edited", "-a", "A=1", "-new", "A=2", false);
        row("arguments edited", "-mine", "A=1", "-mine", "A=2", true);
        row("variables edited", "-a", "A=3", "-new", "A=3", true);
        row("the same edited", "-new", "A='2'", "-new", "A='2'", false);
    }
    void newerRecord() {
        QFETCH(QString, arguments);
        QFETCH(QString, environment);
        EntryParameters entry({{"id", "u1"}, {"arguments", "-a"}, {"envs", QJsonObject{{"A", "1"}}}});
        entry.arguments = arguments;
        entry.environment = environment;
        const QJsonObject newer{{"id", "u1"}, {"arguments", "-new"}, {"envs", QJsonObject{{"A", "2"}}}};
        const bool hasChanged = entry.setRecord(newer);
        QTEST(entry.arguments, "argumentsAfter");
        QTEST(entry.environment, "environmentAfter");
        QTEST(entry.isEdited(), "isEdited");
        QCOMPARE(hasChanged, entry.arguments != arguments || entry.environment != environment);
        QVERIFY(entry.isEdited() || entry.toRecord() == newer);
    }
};

QTEST_GUILESS_MAIN(EnvironmentTextTest)
#include "EnvironmentTextTest.moc"
