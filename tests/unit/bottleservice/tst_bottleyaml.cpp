#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include "bottleservice/bottles/BottleYaml.h"
#include "bottleservice/bottles/YamlText.h"

namespace {

BottleYaml parsed(const QByteArray& text) {
    QString error;
    std::optional<BottleYaml> settings = BottleYaml::parse(text, &error);
    if (!settings)
        qFatal("not parsed: %s", qPrintable(error));
    return std::move(*settings);
}

}  // namespace

class tst_BottleYaml : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void freshBottleReadsBack();
    void unknownKeysAndOrderSurviveAChange();
    void wrongTypesReadAsEmpty();
    void textStaysText_data();
    void textStaysText();
    void garbage_data();
    void garbage();
};

void tst_BottleYaml::freshBottleReadsBack() {
    const BottleYaml fresh = BottleYaml::fresh("n", "r", QDateTime::currentDateTime());
    const QJsonObject record = parsed(fresh.toText()).record();
    QCOMPARE(record, fresh.record());
    QCOMPARE(record["Windows"].toString(), QString("win10"));
    QCOMPARE(record["Installed_Dependencies"].type(), QJsonValue::Array);
    QCOMPARE(record["External_Programs"].type(), QJsonValue::Object);
    QCOMPARE(record["Parameters"].toObject()["custom_dpi"].toInt(), 96);
}

void tst_BottleYaml::unknownKeysAndOrderSurviveAChange() {
    BottleYaml settings = parsed(
        "Zeta: {deep: [1, 'two', !own x]}\nRunner: r\n? [odd, key]\n: v\nExternal_Programs:\n"
        "  one: {path: 'C:\\a', mine: 0x1F, stars: 1}\nAlpha: \"no\"\n");
    settings.setProgram("one", {{"stars", 5}, {"envs", QJsonObject{{"A", "1"}}}});
    settings.setProgram("two", {{"id", "two"}, {"name", "1.10"}});
    const QByteArray text = settings.toText();
    QVERIFY(text.indexOf("Zeta") < text.indexOf("Runner"));
    QVERIFY(text.indexOf("Runner") < text.indexOf("External_Programs"));
    QVERIFY(text.indexOf("External_Programs") < text.indexOf("Alpha"));
    QVERIFY(text.contains("0x1F"));
    QVERIFY(text.contains("odd"));
    QVERIFY(text.contains("!<!own>"));

    const BottleYaml again = parsed(text);
    QCOMPARE(again.toText(), text);
    QCOMPARE(again.program("one")["stars"].toInt(), 5);
    QCOMPARE(again.program("one")["path"].toString(), QString("C:\\a"));
    QCOMPARE(again.program("two")["name"].toString(), QString("1.10"));
    QCOMPARE(again.record()["Alpha"].toString(), QString("no"));
    QVERIFY(settings.removeProgram("one"));
    QVERIFY(!settings.removeProgram("one"));
    QVERIFY(!parsed(settings.toText()).hasProgram("one"));
}

void tst_BottleYaml::wrongTypesReadAsEmpty() {
    BottleYaml settings = parsed(
        "Runner: [a]\nDXVK: 1.10\nVKD3D: ~\nWindows: 7\nParameters: 5\nInstalled_Dependencies: x\n"
        "DLL_Overrides: [1]\nExternal_Programs: {a: 5, b: {path: {x: 1}, stars: many, envs: [1], name: "
        "12}}\n");
    const QJsonObject record = settings.record();
    QCOMPARE(record["Runner"], QJsonValue(""));
    QCOMPARE(record["DXVK"], QJsonValue("1.10"));
    QCOMPARE(record["VKD3D"], QJsonValue(""));
    QCOMPARE(record["Windows"], QJsonValue("7"));
    QCOMPARE(record["Parameters"], QJsonValue(QJsonObject()));
    QCOMPARE(record["Installed_Dependencies"], QJsonValue(QJsonArray()));
    QCOMPARE(record["DLL_Overrides"], QJsonValue(QJsonObject()));
    const QJsonObject programs = record["External_Programs"].toObject();
    QCOMPARE(programs.keys(), QStringList("b"));
    QCOMPARE(programs["b"].toObject(),
             QJsonObject({{"id", "b"}, {"path", ""}, {"stars", 0}, {"envs", QJsonObject()}, {"name", "12"}}));
    // Writing a program repairs only what is in its way.
    settings.setProgram("a", {{"id", "a"}, {"name", "n"}});
    QVERIFY(settings.toText().contains("many"));
    QCOMPARE(settings.program("a")["name"].toString(), QString("n"));
    BottleYaml list = parsed("External_Programs: [1]\nRunner: r\n");
    list.setProgram("a", {{"id", "a"}});
    QVERIFY(parsed(list.toText()).hasProgram("a"));
}

void tst_BottleYaml::textStaysText_data() {
    QTest::addColumn<QString>("text");
    int number = 0;
    for (const char* text :
         {"",   "null", "~",  "true", "no",          "1.10",  "0x10", "1e3", "- a", "a: b",
          "#x", "'",    "\"", "\\n",  "line\nend\n", "\ttab", "!tag", "&a",  "*a",  "中文 \xF0\x9F\x8D\xB7",
          "%",  "@",    "`",  "\x01"})
        QTest::addRow("%d", number++) << QString::fromUtf8(text);
}

void tst_BottleYaml::textStaysText() {
    QFETCH(QString, text);
    BottleYaml settings = parsed("a: b\n");
    settings.setProgram("id", {{"name", text}, {"own", text}, {"envs", QJsonObject{{"K" + text, text}}}});
    const QJsonObject program = parsed(settings.toText()).program("id");
    QCOMPARE(program["name"], QJsonValue(text));
    QCOMPARE(program["own"], QJsonValue(text));
    QCOMPARE(program["envs"].toObject(), QJsonObject({{"K" + text, text}}));
}

void tst_BottleYaml::garbage_data() {
    QTest::addColumn<QByteArray>("text");
    QByteArray laughs = "a0: &a0 [x,x,x,x,x,x,x,x,x,x]\n";
    for (int i = 1; i < 12; ++i) {
        const QByteArray alias = "*a" + QByteArray::number(i - 1);
        const QByteArray name = "a" + QByteArray::number(i);
        laughs += name + ": &" + name + " [" + alias + (',' + alias).repeated(9) + "]\n";
    }
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("scalar") << QByteArray("hello");
    QTest::newRow("list") << QByteArray("- a\n- b\n");
    QTest::newRow("torn") << QByteArray("a: {b: [c\n");
    QTest::newRow("tabs") << QByteArray("a:\n\tb: c\n");
    QTest::newRow("binary") << QByteArray("\x7f\x45LF\0\x01\xff\xfe: {", 10);
    QTest::newRow("deep") << QByteArray(100000, '[');
    QTest::newRow("deep mapping") << QByteArray("{a: ").repeated(300) + QByteArray(300, '}');
    QTest::newRow("aliases of aliases") << laughs;
    QTest::newRow("circle") << QByteArray("a: &a {b: *a}\n");
    QTest::newRow("large") << QByteArray("a: ") + QByteArray(YamlText::MaximumBytes, 'x');
}

void tst_BottleYaml::garbage() {
    QFETCH(QByteArray, text);
    QString error;
    QVERIFY(!BottleYaml::parse(text, &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_BottleYaml)
#include "tst_bottleyaml.moc"
