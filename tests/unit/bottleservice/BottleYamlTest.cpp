#include <QJsonArray>
#include <QJsonDocument>

#include "bottleservice/bottles/BottleYaml.h"
#include "manifest/YamlText.h"
#include "support/Table.h"

namespace {

BottleYaml parsed(const QByteArray& text) {
    QString error;
    std::optional<BottleYaml> settings = BottleYaml::parse(text, &error);
    if (!settings)
        qFatal("not parsed: %s", qPrintable(error));
    return std::move(*settings);
}

}  // namespace

class BottleYamlTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void freshBottleReadsBack() {
        const BottleYaml fresh = BottleYaml::fresh("n", "r", QDateTime::currentDateTime());
        const QJsonObject record = parsed(fresh.toText()).record();
        QCOMPARE(record, fresh.record());
        QCOMPARE(record["Installed_Dependencies"].type(), QJsonValue::Array);
        QCOMPARE(record["External_Programs"].type(), QJsonValue::Object);
    }

    void unknownKeysAndOrderSurviveAChange() {
        BottleYaml settings = parsed(
            "Zeta: {deep: [1, 'two', !own x]}\nRunner: r\n? [odd, key]\n: v\nExternal_Programs:\n"
            "  one: {path: 'C:\\a', mine: 0x1F, stars: 1}\nAlpha: \"no\"\n");
        settings.setProgram("one", {{"stars", 5}, {"envs", QJsonObject{{"A", "1"}}}});
        settings.setProgram("two", {{"id", "two"}, {"name", "1.10"}});
        const QByteArray text = settings.toText();
        QVERIFY(QRegularExpression("Zeta.*!<!own>.*Runner.*odd.*External_Programs.*0x1F.*Alpha",
                                   QRegularExpression::DotMatchesEverythingOption)
                    .match(text)
                    .hasMatch());
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

    /// As Wine reads them.
    void namesOfWine() {
        BottleYaml settings = parsed(
            "DLL_Overrides: {D3D9.dll: 'Native, builtin', d3d9: x, z: b}\n"
            "Font_Replacements: {ARIAL: A, Arial: B, Sans: C}\n");
        QCOMPARE(settings.record()["DLL_Overrides"].toObject(),
                 QJsonObject({{"D3D9.dll", "n,b"}, {"d3d9", "x"}, {"z", "b"}}));
        settings.setOverride("d3D9", "b");
        settings.removeOverride("Z.DLL");
        settings.setFontReplacement("arial", "D");
        settings.removeFontReplacement("SANS");
        QCOMPARE(settings.record()["DLL_Overrides"].toObject(), QJsonObject({{"d3D9", "b"}}));
        QCOMPARE(settings.record()["Font_Replacements"].toObject(), QJsonObject({{"arial", "D"}}));
    }

    void wrongTypesReadAsEmpty() {
        BottleYaml settings = parsed(
            "Runner: [a]\nDXVK: 1.10\nVKD3D: ~\nWindows: 7\nParameters: 5\nInstalled_Dependencies: x\n"
            "DLL_Overrides: [1]\n"
            "External_Programs: {a: 5, b: {path: {x: 1}, stars: many, envs: [1], name: 12}}\n");
        QCOMPARE(settings.record(), QJsonDocument::fromJson(R"({
            "Runner": "", "DXVK": "1.10", "VKD3D": "", "Windows": "7", "Parameters": {},
            "Installed_Dependencies": [], "DLL_Overrides": {},
            "External_Programs": {"b": {"id": "b", "path": "", "stars": 0, "envs": {}, "name": "12"}}})")
                                        .object());
        // Writing a program repairs only what is in its way.
        settings.setProgram("a", {{"id", "a"}, {"name", "n"}});
        QVERIFY(settings.toText().contains("many"));
        QCOMPARE(settings.program("a")["name"].toString(), QString("n"));
        BottleYaml list = parsed("External_Programs: [1]\nRunner: r\n");
        list.setProgram("a", {{"id", "a"}});
        QVERIFY(parsed(list.toText()).hasProgram("a"));
    }

    void textStaysText() {
        for (const char* raw : {"",      "null", "~",   "true", "no",
                                "1.10",  "0x10", "1e3", "- a",  "a: b",
                                "#x",    "'",    "\"",  "\\n",  "line\nend\n",
                                "\ttab", "!tag", "&a",  "*a",   "中文 \xF0\x9F\x8D\xB7",
                                "%",     "@",    "`",   "\x01"}) {
            const QString text = QString::fromUtf8(raw);
            const QJsonObject given{{"name", text}, {"own", text}, {"envs", QJsonObject{{"K" + text, text}}}};
            BottleYaml settings = parsed("a: b\n");
            settings.setProgram("id", given);
            QJsonObject program = parsed(settings.toText()).program("id");
            program.remove("id");
            QVERIFY2(program == given, raw);
        }
    }

    void garbage_data() {
        const TestSupport::Table<QByteArray> row("text");
        QByteArray laughs = "a0: &a0 [x,x,x,x,x,x,x,x,x,x]\n";
        for (int i = 1; i < 12; ++i) {
            const QByteArray alias = "*a" + QByteArray::number(i - 1);
            const QByteArray name = "a" + QByteArray::number(i);
            laughs += name + ": &" + name + " [" + alias + (',' + alias).repeated(9) + "]\n";
        }
        row("empty", "");
        row("list", "- a\n- b\n");
        row("torn", "a: {b: [c\n");
        row("binary", QByteArray("\x7f\x45LF\0\x01\xff\xfe: {", 10));
        row("deep", QByteArray(100000, '['));
        row("aliases of aliases", laughs);
        row("circle", "a: &a {b: *a}\n");
        row("large", "a: " + QByteArray(YamlText::MaximumBytes, 'x'));
    }
    void garbage() {
        QFETCH(QByteArray, text);
        QString error;
        QVERIFY(!BottleYaml::parse(text, &error));
        QVERIFY(!error.isEmpty());
    }
};

QTEST_GUILESS_MAIN(BottleYamlTest)
#include "BottleYamlTest.moc"
