#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QtTest>

#include "ServiceFixture.h"

/// Settings of a real bottle, as its Wine sees them.
class tst_ServiceSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void settings_data();
    void settings();
    void wrongValues_data();
    void wrongValues();
    void interrupted();

private:
    QJsonObject record() const { return object("get", {"b"}); }
    QJsonObject object(const QString& method, const QVariantList& arguments) const;
    /// What Wine prints when it runs the command in the bottle.
    QString wine(const QStringList& arguments) const;

    std::unique_ptr<ServiceFixture> m_service;
};

void tst_ServiceSettings::initTestCase() {
    if (QStandardPaths::findExecutable("wine").isEmpty())
        QSKIP("wine-is-not-installed");
    m_service = std::make_unique<ServiceFixture>();
    QVERIFY(m_service->start());
    QCOMPARE(object("createBottles", {"b", ""})["ok"], QJsonValue(true));
}

QJsonObject tst_ServiceSettings::object(const QString& method, const QVariantList& arguments) const {
    const QDBusMessage reply = m_service->call(method, arguments);
    return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
}

QString tst_ServiceSettings::wine(const QStringList& arguments) const {
    QProcessEnvironment environment = m_service->environment();
    environment.insert("WINEPREFIX", m_service->bottlePath("b"));
    environment.insert("WINEDEBUG", "-all");
    environment.insert("LC_ALL", "C.UTF-8");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start("wine", arguments);
    return process.waitForFinished(60000) ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

void tst_ServiceSettings::settings_data() {
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
    row("updateDllOverride", {"My Updater.exe", "", false}, {"DLL_Overrides", "My Updater.exe"}, "");
    row("updateDllOverride", {"d3d9", "n,b", false}, {"DLL_Overrides", "d3d9"}, "n,b");
    row("updateDllOverride", {"d3d9", "", true}, {"DLL_Overrides", "d3d9"}, QJsonValue::Undefined);
    row("addFontReplacements", {"A \"b\\c\"", "宋体"}, {"Font_Replacements", "A \"b\\c\""}, "宋体",
        {"reg.exe", "query", fonts}, "A \"b\\c\"");
    row("removeFontReplacement", {"A \"b\\c\""}, {"Font_Replacements", "A \"b\\c\""}, QJsonValue::Undefined,
        {"reg.exe", "query", fonts}, "");
}

void tst_ServiceSettings::settings() {
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QStringList, path);
    QFETCH(QStringList, command);
    QFETCH(QString, printed);
    QCOMPARE(m_service->call(method, arguments).errorMessage(), QString());
    QJsonValue found = record();
    for (const QString& key : path)
        found = found.toObject().value(key);
    QTEST(found, "value");
    QVERIFY(!record().contains("Pending_Registry"));
    if (!command.isEmpty()) {
        const QString output = wine(command);
        QVERIFY2(output.contains(printed) && (!printed.isEmpty() || !output.contains("A \"b")),
                 qPrintable(output));
    }
    if (path[0] == "DLL_Overrides")
        QCOMPARE(object("listDllOverrides", {"b"}), record()["DLL_Overrides"].toObject());
    if (path[0] == "Font_Replacements")
        QCOMPARE(object("listFontReplacements", {"b"}), record()["Font_Replacements"].toObject());
}

void tst_ServiceSettings::wrongValues_data() {
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    const auto row = [](const char* method, const QVariantList& arguments) {
        QTest::addRow("%s %d", method, arguments[0].toString().size())
            << method << (QVariantList{"b"} + arguments);
    };
    for (int dpi : {0, -1, 95, 481, INT_MIN})
        QTest::addRow("setDPI %d", dpi) << "setDPI" << QVariantList{"b", dpi};
    row("setD3dRenderer", {"vulkan;rm"});
    row("setWindowsVersion", {"win12"});
    row("setWindowsVersion", {""});
    row("setEmulator", {"../sh"});
    row("updateDllOverride", {"a=n;b", "n", false});
    row("updateDllOverride", {"a", "native", false});
    row("updateDllOverride", {"", "n", true});
    row("addFontReplacements", {"a\nb", "c"});
    row("addFontReplacements", {QString(300, 'x'), "c"});
    row("removeFontReplacement", {" "});
}

void tst_ServiceSettings::wrongValues() {
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    const QJsonObject before = record();
    QCOMPARE(m_service->call(method, arguments).errorName(), QString("com.lumora.Error.InvalidArgs"));
    QCOMPARE(record(), before);
    arguments[0] = "none";
    if (method == "setDPI")
        arguments[1] = 100;
    QVERIFY(!m_service->call(method, arguments).errorMessage().isEmpty());
}

void tst_ServiceSettings::interrupted() {
    // As a service leaves it that was killed between bottle.yml and the registry.
    m_service->kill();
    QFile file(m_service->bottlePath("b") + "/bottle.yml");
    QVERIFY(file.open(QIODevice::Append));
    file.write(
        "Pending_Registry:\n  windows: win81\n  registry: |\n    [HKEY_CURRENT_USER\\Software\\Mark]\n"
        "    \"a\"=\"done\"\n");
    file.close();
    QVERIFY(m_service->start());
    QTRY_VERIFY_WITH_TIMEOUT(!record().isEmpty() && !record().contains("Pending_Registry"), 60000);
    QVERIFY(wine({"reg.exe", "query", "HKCU\\Software\\Mark"}).contains("done"));
    QVERIFY(wine({"cmd.exe", "/c", "ver"}).contains("6.3."));

    // A Wine that cannot do it leaves the old values.
    const QJsonObject before = record();
    m_service->call("killWineServer", {"b"});
    QVERIFY(QFile::rename(m_service->bottlePath("b") + "/dosdevices", m_service->bottlePath("b") + "/away"));
    QVERIFY(QFile::rename(m_service->bottlePath("b") + "/drive_c", m_service->bottlePath("b") + "/gone"));
    QVERIFY(QFile(m_service->bottlePath("b") + "/drive_c").open(QIODevice::WriteOnly));
    QVERIFY(!m_service->call("setDPI", {"b", 200}).errorMessage().isEmpty());
    QCOMPARE(record(), before);
}

QTEST_GUILESS_MAIN(tst_ServiceSettings)
#include "tst_servicesettings.moc"
