#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"

/// Settings of a real bottle, as its Wine sees them.
class ServiceSettingsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ServiceFixture> m_service;

    QJsonObject record() const { return m_service->json("get", {"b"}).object(); }
    /// What Wine prints when it runs the command in the bottle.
    QString wine(const QStringList& arguments) const {
        const QString prefix = "WINEPREFIX=" + m_service->bottlePath("b");
        return TestSupport::runProcess("wine", arguments, {prefix, "WINEDEBUG=-all", "LC_ALL=C.UTF-8"}, 60000)
            .output;
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty())
            QSKIP("wine-is-not-installed");
        m_service = std::make_unique<ServiceFixture>();
        QVERIFY(m_service->start());
        QVERIFY(m_service->json("createBottles", {"b", ""})["ok"].toBool());
    }

    void settings_data() {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QStringList>("path");  // of the value in the record
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QString>("printed");
        const QString fonts = "HKCU\\Software\\Wine\\Fonts\\Replacements";
        const QStringList version = {"cmd.exe", "/c", "ver"};
        const auto row = [](const char* method, const QVariantList& arguments, const QStringList& path,
                            const QJsonValue& value, const QStringList& command = {},
                            const QString& printed = {}) {
            QTest::addRow("%s %s", method, qPrintable(arguments.value(1).toString()))
                << method << (QVariantList{"b"} + arguments) << path << value << command << printed;
        };
        row("setDPI", {144}, {"Parameters", "custom_dpi"}, 144,
            {"reg.exe", "query", "HKCU\\Control Panel\\Desktop", "/v", "LogPixels"}, "0x90");
        row("setWindowsVersion", {"win7"}, {"Windows"}, "win7", version, "6.1.7601");
        row("setWindowsVersion", {"winxp"}, {"Windows"}, "winxp64", version, "5.2.");
        row("setWindowsVersion", {"win11"}, {"Windows"}, "win11", version, "10.0.22000");
        row("setWindowsVersion", {"win10"}, {"Windows"}, "win10", version, "10.0.1");
        row("setD3dRenderer", {"vulkan"}, {"Parameters", "renderer"}, "vulkan");
        row("setCpuRendering", {true}, {"Parameters", "cpu_rendering"}, true);
        row("setDiscreteGpu", {true}, {"Parameters", "discrete_gpu"}, true);
        row("setMemOptimized", {true}, {"Parameters", "mem_optimized"}, true);
        row("setNTSync", {true}, {"Parameters", "ntsync"}, true);
        const QString dlls = "HKCU\\Software\\Wine\\DllOverrides";
        row("updateDllOverride", {"My Updater.exe", "", false}, {"DLL_Overrides", "My Updater.exe"}, "",
            {"reg.exe", "query", dlls}, "My Updater.exe");
        row("updateDllOverride", {"My Updater.exe", "", true}, {"DLL_Overrides", "My Updater.exe"},
            QJsonValue::Undefined, {"reg.exe", "query", dlls}, "");
        row("updateDllOverride", {"d3d9", "n,b", false}, {"DLL_Overrides", "d3d9"}, "n,b");
        row("updateDllOverride", {"d3d9", "", true}, {"DLL_Overrides", "d3d9"}, QJsonValue::Undefined);
        row("addFontReplacements", {"A \"b\\c\"", "宋体"}, {"Font_Replacements", "A \"b\\c\""}, "宋体",
            {"reg.exe", "query", fonts}, "A \"b\\c\"");
        row("removeFontReplacement", {"A \"b\\c\""}, {"Font_Replacements", "A \"b\\c\""},
            QJsonValue::Undefined, {"reg.exe", "query", fonts}, "");
    }

    void settings() {
        QFETCH(QString, method);
        QFETCH(QVariantList, arguments);
        QFETCH(QStringList, path);
        QFETCH(QStringList, command);
        QFETCH(QString, printed);
        QCOMPARE(m_service->error(method, arguments), QString());
        const QJsonObject after = record();
        QVERIFY(!after.contains("Pending_Registry"));
        QTEST(path.size() > 1 ? after[path[0]][path[1]] : after[path[0]], "value");
        if (!command.isEmpty()) {
            const QString output = wine(command);
            QVERIFY2(output.contains(printed) &&
                         (!printed.isEmpty() || !output.contains(QRegularExpression("A \"b|My Upd"))),
                     qPrintable(output));
        }
        const QString list = path[0] == "DLL_Overrides" ? "listDllOverrides" : "listFontReplacements";
        if (path[0] == "DLL_Overrides" || path[0] == "Font_Replacements")
            QCOMPARE(m_service->json(list, {"b"}).object(), after[path[0]].toObject());
    }

    void wrongValues() {
        const QJsonObject before = record();
        for (int dpi : {0, -1, 95, 481, INT_MIN})
            QCOMPARE(m_service->errorName("setDPI", {"b", dpi}), "InvalidArgs");
        const QList<QVariantList> calls{{"setD3dRenderer", "b", "vulkan;rm"},
                                        {"setWindowsVersion", "b", "win12"},
                                        {"setWindowsVersion", "b", ""},
                                        {"setEmulator", "b", "../sh"},
                                        {"updateDllOverride", "b", "a=n;b", "n", false},
                                        {"updateDllOverride", "b", "a", "native", false},
                                        {"updateDllOverride", "b", "", "n", true},
                                        {"addFontReplacements", "b", "a\nb", "c"},
                                        {"addFontReplacements", "b", QString(300, 'x'), "c"},
                                        {"removeFontReplacement", "b", " "}};
        for (const QVariantList& call : calls)
            QVERIFY2(m_service->errorName(call[0].toString(), call.mid(1)) == "InvalidArgs",
                     qPrintable(call[0].toString() + ' ' + call[2].toString()));
        QCOMPARE(record(), before);
    }

    void interrupted() {
        // As a service leaves it that was killed between bottle.yml and the registry.
        m_service->kill();
        const QString path = m_service->bottlePath("b");
        m_service->write("bottles/b/bottle.yml", TestSupport::readFile(path + "/bottle.yml") + R"(
Pending_Registry:
  windows: win81
  registry: |
    [HKEY_CURRENT_USER\Software\Mark]
    "a"="done"
)");
        QVERIFY(m_service->start());
        QTRY_VERIFY_WITH_TIMEOUT(!record().isEmpty() && !record().contains("Pending_Registry"), 60000);
        QVERIFY(wine({"reg.exe", "query", "HKCU\\Software\\Mark"}).contains("done"));
        QVERIFY(wine({"cmd.exe", "/c", "ver"}).contains("6.3."));

        // A Wine that cannot do it leaves the old values.
        const QJsonObject before = record();
        m_service->call("killWineServer", {"b"});
        QVERIFY(QFile::rename(path + "/dosdevices", path + "/away"));
        QVERIFY(QFile::rename(path + "/drive_c", path + "/gone"));
        m_service->write("bottles/b/drive_c", "");
        QVERIFY(!m_service->error("setDPI", {"b", 200}).isEmpty());
        QCOMPARE(record(), before);
    }
};

QTEST_GUILESS_MAIN(ServiceSettingsTest)
#include "ServiceSettingsTest.moc"
