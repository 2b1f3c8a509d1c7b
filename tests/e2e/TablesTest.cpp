#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QStandardItemModel>
#include <QtTest>

#include "backend/BottlesConfig.h"
#include "e2e/InstalledApp.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "launch/script/WineLauncher.h"
#include "shell/configuration/dlls/DllOverrideListView.h"
#include "shell/configuration/dlls/LoadMethods.h"
#include "shell/configuration/fonts/FontReplacementListView.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {
constexpr int LimitMs = 120000;
const char Bottle[] = "tables";
}  // namespace

/// What the configuration window's tables say is what programs of the bottle get: real widgets, service and
/// Wine.
class TablesTest : public QObject {
    Q_OBJECT

    QPointer<BottlesConfigView> m_view;
    QString m_folder;

    /// The line that probe.cpp writes; empty when the program cannot be started.
    QString probe(const QString& program, const QString& what, const QString& name) const {
        const QString file = m_folder + "/line.txt";
        QFile::remove(file);
        WineLauncher launcher(Bottle, nullptr);
        launcher.setWait(true);
        QSignalSpy finished(&launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished));
        launcher.launchExe(m_folder + '/' + program, {"C:\\app\\line.txt", what, name});
        if (!finished.wait(LimitMs))
            qWarning() << "the program does not end";
        return QString::fromUtf8(readFile(file));
    }
    QString loaded() const { return probe("probe.exe", "dll", "d3d8.dll"); }
    QString size(const QString& font) const { return probe("probe.exe", "font", font); }

    template <class Widget>
    Widget* find(const QString& name) const {
        return m_view->findChild<Widget*>(name);
    }
    /// The service has this list, and the registry no change that is not done yet.
    bool becomes(const QString& method, const QJsonObject& list) const {
        const auto is = [&] {
            return bottlesJson(method, {Bottle}).object() == list &&
                   !bottlesJson("get", {Bottle}).object().contains("Pending_Registry");
        };
        return QTest::qWaitFor(is, LimitMs);
    }
    bool overridesBecome(const QJsonObject& list) const { return becomes("listDllOverrides", list); }
    void setMethod(int row, int method) {
        auto* table = find<DllOverrideListView>("dlloverride_listview");
        table->setCurrentIndex(table->rows()->index(row, 1));
        QTest::keyClick(table, Qt::Key_F2);
        auto* combo = table->findChild<QComboBox*>();
        QTRY_VERIFY(combo->view()->isVisible());
        combo->view()->setCurrentIndex(combo->model()->index(method, 0));
        QTest::keyClick(combo->view(), Qt::Key_Return);
        QTRY_VERIFY(table->findChildren<QComboBox*>().isEmpty());
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("probe").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        BottlesConfig* service = BottlesConfig::instance();
        QSignalSpy created(service, &BottlesConfig::bottlesCreated);
        service->createBottles(Bottle, "lumora-wine10-stable");
        QVERIFY(created.wait(2 * LimitMs));
        m_folder = bottlesJson("get", {Bottle}).object().value("Path").toString() + "/drive_c/app";
        QVERIFY(QDir().mkpath(m_folder));
        const QString probe = sample("probe");
        QVERIFY(QFile::copy(probe, m_folder + "/probe.exe") &&
                QFile::copy(probe, m_folder + "/App Updater.exe"));
        QVERIFY(QFile::copy(QFileInfo(probe).path() + "/sqlite3.dll", m_folder + "/d3d8.dll"));
        const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        const QJsonObject record{{"id", id}, {"name", "Probe"}, {"path", "C:\\app\\probe.exe"}};
        QVERIFY(service->updateExternalProgram(Bottle, record).ok);
        m_view = new BottlesConfigView;
        QSignalSpy ready(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle(Bottle);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view) && (ready.count() || ready.wait(LimitMs)));
    }
    void cleanupTestCase() {
        delete m_view;
        killAllWineServers();
    }

    void overrides() {
        m_view->onConfigurePageToggled(BottlesConfigView::DllOverride);
        QCOMPARE(loaded(), QString("builtin"));
        QTest::mouseClick(find<QAbstractButton>("dlloverride_addbtn"), Qt::LeftButton);
        auto* table = find<DllOverrideListView>("dlloverride_listview");
        auto* combo = table->findChild<QComboBox*>();
        QTest::keyClicks(combo, "d3d8");
        QTest::keyClick(combo, Qt::Key_Return);
        QVERIFY(overridesBecome({{"d3d8", "n,b"}}));
        QCOMPARE(loaded(), QString("native"));
        setMethod(0, 1);
        QVERIFY(overridesBecome({{"d3d8", "b"}}));
        QCOMPARE(loaded(), QString("builtin"));
        setMethod(0, LoadMethods::Disabled);
        QVERIFY(overridesBecome({{"d3d8", ""}}));
        QVERIFY(loaded().startsWith("error "));
        QTest::keyClick(table, Qt::Key_Delete);
        QVERIFY(overridesBecome({}));
        QCOMPARE(loaded(), QString("builtin"));
    }

    void updaters() {
        QVERIFY(!probe("App Updater.exe", "dll", "d3d8.dll").isEmpty());
        find<QPushButton>("dlloverride_scanbtn")->menu()->actions().last()->trigger();
        QTRY_VERIFY(find<Fenk::Dialog>("scan_dialog"));
        QTest::mouseClick(find<Fenk::Dialog>("scan_dialog")->button(1), Qt::LeftButton);
        QVERIFY(overridesBecome({{"app updater.exe", ""}}));
        QCOMPARE(probe("App Updater.exe", "dll", "d3d8.dll"), QString());
        QTest::mouseClick(find<QAbstractButton>("undo_btn"), Qt::LeftButton);
        QVERIFY(overridesBecome({}));
        QVERIFY(!probe("App Updater.exe", "dll", "d3d8.dll").isEmpty());
    }

    void fonts() {
        m_view->onConfigurePageToggled(BottlesConfigView::FontReplacement);
        const QString before = size("Segoe UI"), serif = size("DejaVu Serif");
        QVERIFY(!before.isEmpty() && before != serif);
        QTest::mouseClick(find<QAbstractButton>("fontreplacement_addbtn"), Qt::LeftButton);
        find<QComboBox>("windows_font_combobox")->setEditText("Segoe UI");
        find<QComboBox>("linux_font_combobox")->setEditText("DejaVu Serif");
        QTest::mouseClick(find<QAbstractButton>("ok_btn"), Qt::LeftButton);
        QVERIFY(becomes("listFontReplacements", {{"Segoe UI", "DejaVu Serif"}}));
        QCOMPARE(size("Segoe UI"), serif);
        auto* table = find<FontReplacementListView>("fontreplacement_listview");
        table->selectRow(0);
        QTest::keyClick(table, Qt::Key_Delete);
        QVERIFY(becomes("listFontReplacements", {}));
        QCOMPARE(size("Segoe UI"), before);
    }
};

int main(int argc, char** argv) {
    Fenk::Application app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    TablesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "TablesTest.moc"
