#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QSpinBox>
#include <QStandardPaths>
#include <QtTest>

#include "e2e/InstalledApp.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "support/EnvironmentGuard.h"
#include "support/HttpServer.h"
#include "support/Table.h"
#include "support/TestHome.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 180000;
const char Bottle[] = "office";
const char Title[] = "Sample of the settings";

QString libraryOf(const QString& layer) {
    return layer.startsWith("dxvk") ? "d3d9.dll" : "d3d12.dll";
}

}  // namespace

/// What a user sets in the configuration window is what Wine and the programs in the bottle see. With
/// everything real, in one bottle.
class ConfigurationTest : public QObject {
    Q_OBJECT

    EnvironmentGuard m_environment;
    QTemporaryDir m_dir;
    HttpServer m_server;
    WindowFinder m_windows;
    QPointer<BottlesConfigView> m_view;

    static QJsonObject record() { return bottlesJson("get", {Bottle}).object(); }
    static QJsonValue parameter(const QString& key) { return record()["Parameters"].toObject()[key]; }
    /// What Wine prints when it runs the command in the bottle.
    static QString wine(const QStringList& arguments) {
        const QString prefix = "WINEPREFIX=" + record()["Path"].toString();
        return runProcess("wine", arguments, {prefix, "WINEDEBUG=-all", "LC_ALL=C.UTF-8"}, LongMs).output;
    }
    template <class Widget = QWidget>
    Widget* find(const QString& name) const {
        return m_view->findChild<Widget*>(name);
    }
    QAbstractButton* button(const QString& name) const { return find<QAbstractButton>(name); }
    ComponentsSwitcherWidget* switcher(const QString& kind) const {
        return find<ComponentsSwitcherWidget>(kind == "wine" ? "wine_version_combobox"
                                                             : kind + "_versions_combobox");
    }
    QString label(const QString& kind, const QString& name) const {
        return switcher(kind)->findChild<QLabel*>(name)->text();
    }
    /// By the keyboard.
    static void choose(QComboBox* combo, const QString& text) {
        QTRY_VERIFY2_WITH_TIMEOUT(combo->findText(text) >= 0, qPrintable(text), LongMs);
        combo->setFocus();
        combo->showPopup();
        QTRY_VERIFY(combo->view()->isVisible());
        QTest::keyClick(combo->view(), Qt::Key_Home);
        for (int i = 0; i < combo->findText(text); ++i)
            QTest::keyClick(combo->view(), Qt::Key_Down);
        QTest::keyClick(combo->view(), Qt::Key_Return);
        QTRY_VERIFY(!combo->view()->isVisible());
    }
    /// Until the bottle has it.
    void setUp(const QString& kind, const QString& version, const QString& key, const QString& value) {
        choose(switcher(kind)->combo(), version);
        QTRY_COMPARE_WITH_TIMEOUT(record()[key].toString(), value, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(switcher(kind)->currentIndex(), 0, LongMs);
        QCOMPARE(switcher(kind)->combo()->currentText(), version);
    }
    /// Runs the sample from the window's foot until its window is there.
    WindowInfo run() {
        button("debug_btn")->click();
        return m_windows.waitForTitle(Title, LongMs);
    }
    void waitForEnd() {
        QTRY_VERIFY_WITH_TIMEOUT(button("debug_btn")->isVisible() && button("debug_btn")->isEnabled(),
                                 LongMs);
        QVERIFY(!m_windows.byTitle(Title).id);
    }
    void stop() {
        button("stop_debug_btn")->click();
        waitForEnd();
    }
    void answerQuestion(int answer) {
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeModalWidget(), LongMs);
        qobject_cast<Fenk::Dialog*>(QApplication::activeModalWidget())->button(answer)->click();
    }
    /// Before the tools of the machine, which need not have it.
    void addTool(const QString& name, const QByteArray& script) {
        m_environment.set("PATH", QFile::encodeName(m_dir.path()) + ':' + qgetenv("PATH"));
        QFile file(m_dir.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script) > 0);
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }
    void offerComponents() {
        const QString data = QDir::homePath() + "/.local/share/lumora-wine-bottles/";
        QVERIFY(QDir().mkpath(data + "runners/lumora-ge-proton10/bin"));
        for (const char* program : {"wine", "wineserver"})
            QVERIFY(QFile::link(QStandardPaths::findExecutable(program),
                                data + "runners/lumora-ge-proton10/bin/" + program));
        const QString built = QFileInfo(sample("window")).path() + "/sqlite3.dll";
        for (const QString layer : {"dxvk-2.9", "vkd3d-proton-2.9"}) {
            QVERIFY(QDir().mkpath(m_dir.filePath(layer + "/x64")));
            QVERIFY(QFile::copy(built, m_dir.filePath(layer + "/x64/" + libraryOf(layer))));
            const QString archive = m_dir.filePath(layer + ".tar");
            QVERIFY(runProcess("tar", {"-C", m_dir.path(), "-cf", archive, layer}).ok());
        }
        m_server.files = {{"late.tar", QByteArray(4000, 'x')}};
        QFile sources(data + "sources.json");
        QVERIFY(sources.open(QIODevice::WriteOnly));
        sources.write(QString(R"({"allow_unverified": true, "files": {
            "dxvk-2.9.tar": {"addresses": ["%1/dxvk-2.9.tar"]}, "none.tar": {"addresses": ["%1/none.tar"]},
            "vkd3d-proton-2.9.tar": {"addresses": ["%1/vkd3d-proton-2.9.tar"]},
            "late.tar": {"addresses": ["%2"]}}, "archives": {"dxvk": {
            "dxvk-2.9": "dxvk-2.9.tar", "dxvk-2.10": "none.tar", "dxvk-late": "late.tar"},
            "vkd3d": {"vkd3d-proton-2.9": "vkd3d-proton-2.9.tar"}}})")
                          .arg(m_dir.path(), m_server.address("slow/late.tar"))
                          .toUtf8());
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("window").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        QApplication::setQuitOnLastWindowClosed(false);
        addTool("modinfo", "exit 0\n");
        addTool("x-terminal-emulator", "shift\n\"$@\" > \"${0%/*}/terminal.txt\"\n");
        offerComponents();
        QVERIFY(bottlesJson("createBottles", {Bottle, ""})["ok"].toBool());
        addProgram(Bottle, "11111111-0000-4000-8000-000000000000", "window", sample("window"),
                   QString("\"%1\" report").arg(Title));
        m_view = new BottlesConfigView;
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle(Bottle);
        m_view->show();
        QTRY_COMPARE_WITH_TIMEOUT(loaded.count(), 1, LongMs);
        QVERIFY(QTest::qWaitForWindowActive(m_view));
    }
    void cleanupTestCase() {
        delete m_view;
        killAllWineServers();
    }

    void windowsVersion_data() {
        const Table<QString, QString> row("code", "told");
        row("Windows 7", "win7", "6.1.7601");
        row("Windows XP", "winxp64", "5.2.");
        row("Windows 11", "win11", "10.0.22000");
    }
    void windowsVersion() {
        QFETCH(QString, code);
        QFETCH(QString, told);
        choose(find<QComboBox>("window_version_combobox"), QTest::currentDataTag());
        QTRY_COMPARE_WITH_TIMEOUT(record()["Windows"].toString(), code, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(!record().contains("Pending_Registry"), LongMs);
        QVERIFY(wine({"cmd.exe", "/c", "ver"}).contains(told));
    }

    void dpi() {
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(find("dpi_spinbox"), Qt::Key_Up);
        QTRY_COMPARE_WITH_TIMEOUT(parameter("custom_dpi").toInt(), 186, LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(!record().contains("Pending_Registry"), LongMs);
        const QStringList query{"reg.exe", "query", "HKCU\\Control Panel\\Desktop", "/v", "LogPixels"};
        QVERIFY(wine(query).contains("0xba"));
    }

    void started_data() {
        const Table<QString, QString, QString> row("renderer", "control", "variables");
        row("nothing", "gdi", "",
            "WINE_D3D_CONFIG=renderer=gdi LIBGL_ALWAYS_SOFTWARE= DRI_PRIME= MALLOC_ARENA_MAX= WINENTSYNC=");
        row("processor", "opengl", "software_render_switch_btn",
            "WINE_D3D_CONFIG=renderer=gl LIBGL_ALWAYS_SOFTWARE=1 GALLIUM_DRIVER=llvmpipe");
        row("graphics card", "vulkan", "discrete_gpu_switch_btn",
            "WINE_D3D_CONFIG=renderer=vulkan DRI_PRIME=1");
        row("memory", "opengl", "mem_optimized_switch_btn", "MALLOC_ARENA_MAX=2");
    }
    /// What a program gets that is started with a renderer and a switch.
    void started() {
        QFETCH(QString, renderer);
        QFETCH(QString, control);
        QFETCH(QString, variables);
        choose(find<QComboBox>("d3drenderer_combobox"), renderer);
        tryWith(control.isEmpty() ? nullptr : button(control), variables);
    }

    /// A component comes into the bottle as a whole, fails or is cancelled without a trace, and goes.
    void graphicsLayers() {
        setUp("dxvk", "dxvk-2.9", "DXVK", "dxvk-2.9");
        QCOMPARE(find<QComboBox>("d3drenderer_combobox")->currentText(), QString("vulkan"));
        QTRY_COMPARE(parameter("renderer").toString(), QString("vulkan"));
        if (switcher("vkd3d")->combo()->isEnabled())
            setUp("vkd3d", "vkd3d-proton-2.9", "VKD3D", "vkd3d-proton-2.9");

        choose(switcher("dxvk")->combo(), "dxvk-2.10");
        QTRY_COMPARE_WITH_TIMEOUT(label("dxvk", "tips_label"), QString("Setup failed: dxvk-2.10"), LongMs);
        QVERIFY(!switcher("dxvk")->findChild<QWidget*>("component_tips_view")->toolTip().isEmpty());
        switcher("dxvk")->findChild<QAbstractButton*>("tips_closebtn")->click();
        QCOMPARE(switcher("dxvk")->combo()->currentText(), QString("dxvk-2.9"));

        choose(switcher("dxvk")->combo(), "dxvk-late");
        auto* progress = switcher("dxvk")->findChild<QProgressBar*>();
        QTRY_VERIFY_WITH_TIMEOUT(progress->isVisible() && progress->value() > 0, LongMs);
        switcher("dxvk")->findChild<QAbstractButton*>("tips_closebtn")->click();
        QTRY_COMPARE(callBottles("getInstallingComponents", {Bottle, "dxvk"}), QString("{}"));
        QCOMPARE(switcher("dxvk")->combo()->currentText(), QString("dxvk-2.9"));

        QVERIFY(run().title.endsWith("dpi 186 d3d9 native"));
        choose(switcher("dxvk")->combo(), "Disabled");
        answerQuestion(0);
        QTRY_COMPARE(switcher("dxvk")->combo()->currentText(), QString("dxvk-2.9"));
        choose(switcher("dxvk")->combo(), "Disabled");
        answerQuestion(1);
        QTRY_COMPARE_WITH_TIMEOUT(record()["DXVK"].toString(), QString(), LongMs);
        waitForEnd();
    }

    /// Another renderer does without the layers, and undo brings them back.
    void rendererEndsLayers() {
        setUp("dxvk", "dxvk-2.9", "DXVK", "dxvk-2.9");
        choose(find<QComboBox>("d3drenderer_combobox"), "opengl");
        QCOMPARE(switcher("dxvk")->combo()->currentText(), QString("Disabled"));
        QTRY_COMPARE_WITH_TIMEOUT(record()["DXVK"].toString(), QString(), LongMs);
        QVERIFY(run().title.endsWith("d3d9 builtin"));
        stop();
        button("undo_btn")->click();
        QTRY_COMPARE_WITH_TIMEOUT(record()["DXVK"].toString(), QString("dxvk-2.9"), LongMs);
        QCOMPARE(parameter("renderer").toString(), QString("vulkan"));
        QVERIFY(run().title.endsWith("d3d9 native"));
        stop();
    }

    void runnerAndNtSync() {
        QVERIFY(!button("ntsync_switch_btn")->isEnabled());
        setUp("wine", "lumora-ge-proton10", "Runner", "lumora-ge-proton10");
        QTRY_VERIFY(button("ntsync_switch_btn")->isEnabled());
        QVERIFY(!button("mem_optimized_switch_btn")->isEnabled());
        tryWith(button("ntsync_switch_btn"), "WINENTSYNC=1 PROTON_USE_NTSYNC=1");
        find("wine_version_combobox")->parentWidget()->findChild<QAbstractButton*>("reset_btn")->click();
        QTRY_COMPARE_WITH_TIMEOUT(record()["Runner"].toString(), QString("lumora-wine10-stable"), LongMs);
        QTRY_VERIFY(!button("ntsync_switch_btn")->isEnabled());
    }

    void parameters() {
        m_view->onConfigurePageToggled(BottlesConfigView::WineParameter);
        const QString kept = m_dir.filePath("kept.log");
        for (const auto& [name, text] : {std::pair<const char*, QString>{"params_environment", "WORDS='x y'"},
                                         {"params_channels", "+process"},
                                         {"params_log_file", kept}})
            QTest::keyClicks(find(name)->findChild<QLineEdit*>(), text);
        const QMap<QString, QString> environment = environmentOf(run().pid);
        QCOMPARE(environment.value("WORDS"), QString("x y"));
        QCOMPARE(environment.value("WINEDEBUG"), QString("+process"));
        stop();
        QTRY_VERIFY(readFile(kept).contains("trace:process"));
        const QJsonObject entry = record()["External_Programs"].toObject().begin()->toObject();
        QCOMPARE(entry["envs"].toObject(), QJsonObject({{"WORDS", "x y"}}));
    }

    void terminal() {
        addProgram(Bottle, "22222222-0000-4000-8000-000000000000", "console", sample("console"),
                   "one \"two three\"");
        QTRY_COMPARE(m_view->findChildren<AppEntryButton*>().size(), 2);
        auto* entry = m_view->findChildren<AppEntryButton*>().last();
        entry->click();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {});
        QApplication::sendEvent(entry, &event);
        for (QAction* action : find<QMenu>("entry_menu")->actions()) {
            if (action->text() == "Run in terminal")
                action->trigger();
        }
        const QString output = m_dir.filePath("terminal.txt");
        QTRY_VERIFY_WITH_TIMEOUT(readFile(output).contains("arguments: [one] [two three]"), LongMs);
        waitForEnd();
    }

private:
    /// Runs the sample with the switch on; a variable without a value is one that the program must not have.
    void tryWith(QAbstractButton* onOff, const QString& variables) {
        if (onOff)
            QTest::keyClick(onOff, Qt::Key_Space);
        const QMap<QString, QString> environment = environmentOf(run().pid);
        for (const QString& variable : variables.split(' '))
            QCOMPARE(variable.section('=', 0, 0) + '=' + environment.value(variable.section('=', 0, 0)),
                     variable);
        stop();
        if (onOff)
            QTest::keyClick(onOff, Qt::Key_Space);
    }
};

int main(int argc, char** argv) {
    Fenk::Application app(argc, argv);
    ConfigurationTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ConfigurationTest.moc"
