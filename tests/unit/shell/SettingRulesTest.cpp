#include "shell/configuration/rules/SettingRules.h"

#include "shell/configuration/rules/ComponentOffer.h"
#include "shell/configuration/rules/DebugLog.h"
#include "shell/configuration/rules/DriverRule.h"
#include "shell/configuration/rules/EntryList.h"
#include "shell/configuration/rules/SettingTable.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::Table;

class SettingRulesTest : public QObject {
    Q_OBJECT

    static SettingRowState state(const QString& renderer, const QString& runner, KernelModule ntSync,
                                 Setting setting) {
        SettingValues values;
        values.set(Setting::Renderer, renderer);
        values.set(Setting::Runner, runner);
        return SettingRules::rowStates(values, ntSync)[size_t(setting)];
    }

private Q_SLOTS:
    void rendererRule_data() {
        const Table<QString, bool, bool> row("renderer", "gpu", "cpu");
        row("opengl", "gl", false, true);
        row("gdi", "gdi", false, false);
        row("vulkan", "vulkan", true, false);
    }
    void rendererRule() {
        QFETCH(QString, renderer);
        QFETCH(bool, gpu);
        QFETCH(bool, cpu);
        const SettingRowState gpuRow = state(renderer, "wine", KernelModule::Missing, Setting::DiscreteGpu);
        const SettingRowState cpuRow = state(renderer, "wine", KernelModule::Missing, Setting::CpuRendering);
        QCOMPARE(gpuRow.isEnabled, gpu);
        QCOMPARE(cpuRow.isEnabled, cpu);
        QCOMPARE(gpuRow.reason.isEmpty(), gpu);  // what is grey says why
        QCOMPARE(cpuRow.reason.isEmpty(), cpu);
    }

    void runnerRules_data() {
        const Table<QString, bool, bool, bool, bool> row("runner", "memRow", "memControl", "forcedOn",
                                                         "ntsync");
        row("default", "lumora-wine10-stable", true, true, false, false);
        row("wine 6", "lumora-wine6-stable", true, false, true, false);
        row("wine 6 of another", "wine6-stable", true, true, false, false);
        row("proton 9", "ge-proton9", false, true, false, false);
        row("proton 10", "lumora-ge-proton10", false, true, false, true);
        row("proton in the middle", "my-proton-5", false, true, false, false);
    }
    void runnerRules() {
        QFETCH(QString, runner);
        QFETCH(bool, memRow);
        QFETCH(bool, memControl);
        QFETCH(bool, forcedOn);
        QFETCH(bool, ntsync);
        const SettingRowState memory = state("gl", runner, KernelModule::Present, Setting::MemOptimized);
        QCOMPARE(memory.isEnabled, memRow);
        QCOMPARE(memory.isControlEnabled, memControl);
        QCOMPARE(memory.isForcedOn, forcedOn);
        QCOMPARE(state("gl", runner, KernelModule::Present, Setting::NtSync).isEnabled, ntsync);
        for (const KernelModule ntSync :
             {KernelModule::NotAsked, KernelModule::Missing, KernelModule::NoTool})
            QVERIFY(!state("gl", runner, ntSync, Setting::NtSync).isEnabled);
        for (const Setting setting : {Setting::Renderer, Setting::Dpi, Setting::Dxvk, Setting::Vkd3d,
                                      Setting::WindowsVersion, Setting::Runner})
            QVERIFY(state("gl", runner, KernelModule::Present, setting) == SettingRowState());
    }

    void choices_data() {
        const Table<QString, int, QString, QString, QString, QString, bool> row(
            "before", "setting", "value", "renderer", "dxvk", "vkd3d", "tells");
        const int renderer = int(Setting::Renderer), dxvk = int(Setting::Dxvk), vkd3d = int(Setting::Vkd3d);
        row("away from vulkan", "vulkan", renderer, "gl", "gl", "", "", false);
        row("to vulkan", "gl", renderer, "vulkan", "vulkan", "d1", "v1", false);
        row("dxvk on", "gl", dxvk, "d2", "vulkan", "d2", "v1", true);
        row("vkd3d on", "gdi", vkd3d, "v2", "vulkan", "d1", "v2", true);
        row("dxvk on vulkan", "vulkan", dxvk, "d2", "vulkan", "d2", "v1", false);
        row("dxvk off", "gl", dxvk, "", "gl", "", "v1", false);
    }
    void choices() {
        QFETCH(QString, before);
        QFETCH(int, setting);
        QFETCH(QString, value);
        SettingValues values;
        values.set(Setting::Renderer, before);
        values.set(Setting::Dxvk, QString("d1"));
        values.set(Setting::Vkd3d, QString("v1"));
        const SettingRules::Effect effect = SettingRules::effectOf(values, Setting(setting), value);
        QTEST(effect.values.text(Setting::Renderer), "renderer");
        QTEST(effect.values.text(Setting::Dxvk), "dxvk");
        QTEST(effect.values.text(Setting::Vkd3d), "vkd3d");
        QTEST(effect.setsVulkan, "tells");
    }

    void records() {
        const TestSupport::LogCapture log;
        SettingValues values;
        values.read(
            {{"Windows", "winxp64"},
             {"Runner", "ge-proton9"},
             {"DXVK", "dxvk-2.3"},
             {"Parameters", QJsonObject{{"custom_dpi", 0}, {"renderer", "vulkan"}, {"ntsync", true}}}});
        QCOMPARE(values.text(Setting::WindowsVersion), QString("winxp"));
        QCOMPARE(SettingChoices::textOf(Setting::WindowsVersion, "winxp"), QString("Windows XP"));
        QCOMPARE(values.value(Setting::Dpi).toInt(), 96);
        QCOMPARE(values.text(Setting::Renderer), QString("vulkan"));
        QVERIFY(values.isOn(Setting::NtSync) && !values.isOn(Setting::DiscreteGpu));
        QVERIFY(!values.isStandard(Setting::Dxvk) && values.isStandard(Setting::Vkd3d));
        QCOMPARE(SettingRules::withRendererOfLayers(SettingValues()), SettingValues());
        // What is not in the tables leaves the shown value.
        values.read({{"Windows", "win3"}, {"Parameters", QJsonObject{{"renderer", "d3d"}}}});
        QCOMPARE(values.text(Setting::WindowsVersion), QString("winxp"));
        QCOMPARE(values.text(Setting::Renderer), QString("vulkan"));
        QVERIFY(log.contains("unknown renderer value from config \"d3d\""));
        QVERIFY(log.contains("unknown windows version from config \"win3\""));
    }

    void calls() {
        for (int i = 0; i < SettingCount; ++i)
            QCOMPARE(int(SettingTable::all()[size_t(i)].setting), i);
        Setting setting = Setting::Dpi;
        QVERIFY(SettingTable::settingOfKind("vkd3d", &setting) && setting == Setting::Vkd3d);
        QVERIFY(!SettingTable::settingOfKind("", &setting));
    }

    void offers_data() {
        const Table<int, bool, bool, int, bool, QString, QStringList, QString> row(
            "setting", "known", "driver", "level", "vkd3d", "current", "values", "obstacle");
        const int dxvk = int(Setting::Dxvk), vkd3d = int(Setting::Vkd3d), runner = int(Setting::Runner);
        const QStringList all{"", "a-2.3", "a-1.10", "b-21"};
        row("not asked yet", dxvk, false, false, 0, false, "", all, "");
        row("all", dxvk, true, true, 2, false, "", all, "");
        row("dxvk 1 only", dxvk, true, true, 1, false, "", {"", "a-1.10"}, "");
        row("current stays", dxvk, true, true, 1, false, "a-2.3", {"", "a-1.10", "a-2.3"}, "");
        row("old device", dxvk, true, true, 0, false, "", {""}, "Your devices not support dxvk");
        row("no driver", dxvk, true, false, 0, false, "b-21", {"", "b-21"}, "Vulkan driver not installed");
        row("vkd3d", vkd3d, true, true, 1, true, "", all, "");
        row("no vkd3d", vkd3d, true, true, 2, false, "", {""}, "Your devices not support vkd3d");
        row("runners", runner, true, false, 0, false, "gone", {"a-2.3", "a-1.10", "b-21", "gone"}, "");
        row("no runner", runner, true, false, 0, false, "", {"a-2.3", "a-1.10", "b-21"}, "");
    }
    void offers() {
        QFETCH(int, setting);
        QFETCH(bool, known);
        QFETCH(bool, driver);
        QFETCH(int, level);
        QFETCH(bool, vkd3d);
        QFETCH(QString, current);
        const ComponentOffer offer =
            ComponentOffer::of(Setting(setting), {"a-2.3", "a-1.10"}, {"a-1.10", "", "b-21"}, current,
                               {known, driver, DxvkSupportResult(level), vkd3d});
        QTEST(offer.values, "values");
        QTEST(offer.obstacle, "obstacle");
    }

    void logLines_data() {
        const Table<QString, int> row("line", "kind");
        row("trace", "0024:trace:seh:start_debugger x", int(DebugLog::Kind::Dropped));
        row("error", "0024:err:module:import_dll", int(DebugLog::Kind::Error));
        row("capitals", "ERROR: no disk", int(DebugLog::Kind::Error));
        row("other case", "Error", int(DebugLog::Kind::Plain));
        row("plain", "0024:fixme:win:stub", int(DebugLog::Kind::Plain));
        row("word", "a trace of it", int(DebugLog::Kind::Plain));
    }
    void logLines() {
        QFETCH(QString, line);
        QTEST(int(DebugLog::kindOf(line)), "kind");
    }

    void drivers() {
        QVERIFY(DriverRule::isConcerned("amd64", "ge-proton9"));
        QVERIFY(DriverRule::isConcerned("amd64", "lumora-ge-proton10"));
        QVERIFY(!DriverRule::isConcerned("amd64", "lumora-proton9"));
        QVERIFY(!DriverRule::isConcerned("arm64", "ge-proton9"));
        QVERIFY(DriverRule::isFor32Bit("PE32 executable (GUI) Intel 80386, for MS Windows"));
        QVERIFY(!DriverRule::isFor32Bit("PE32+ executable (GUI) x86-64, for MS Windows"));
    }

    void entries() {
        EntryList list;
        QCOMPARE(list.current(), -1);
        QVERIFY(!list.currentEntry() && !list.select(0));
        list.setAll({{"a", QJsonObject{{"name", " A\n1 "}}}, {"b", QJsonObject()}, {"c", QJsonObject()}});
        QCOMPARE(list.currentEntry()->name(), QString("A 1"));
        QVERIFY(list.select(2));
        QCOMPARE(list.put("b", {{"name", "B"}}), 1);
        QCOMPARE(list.entries()[1].name(), QString("B"));
        QVERIFY(list.remove("c") && !list.remove("c"));
        QCOMPARE(list.currentEntry()->id, QString("b"));
        QVERIFY(list.remove("a"));
        QCOMPARE(list.currentEntry()->id, QString("b"));
        list.setAll({});
        QCOMPARE(list.current(), -1);
    }
};

QTEST_APPLESS_MAIN(SettingRulesTest)
#include "SettingRulesTest.moc"
