#include <QAbstractButton>
#include <QApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QPointer>
#include <QStandardPaths>
#include <QtTest>

#include "core/base/Paths.h"
#include "e2e/InstalledApp.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/components/ComponentRoles.h"
#include "shell/configuration/components/ComponentsListView.h"
#include "shell/configuration/components/ComponentsPage.h"
#include "support/WindowFinder.h"

using namespace TestSupport;

namespace {

constexpr int LongMs = 180000;
const char Bottle[] = "parts";
const char SampleTitle[] = "Cellarix sample window";
const char Recipes[] = R"({
    "sample_part": {"recipe": {"steps": [{"extract": "sqlite3.tar", "files": ["sqlite3.dll"]}]}},
    "sample_set": {"needs": ["sample_part"], "recipe": {"steps": [
        {"extract": "vcamp140.tar", "files": ["vcamp140.dll"]}, {"override": ["vcamp140"], "mode": "native"}]}},
    "sample_note": {"recipe": {"steps": [
        {"registry": "HKEY_CURRENT_USER\\Software\\Sample", "values": {"Note": "here"}}]}},
    "sample_gone": {"recipe": {"steps": [{"extract": "no-such.tar", "files": ["x.dll"]}]}}})";

}  // namespace

/// Components come into a bottle through the real page, the real service and real Wine.
class ComponentInstallTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ComponentsPage> m_page;
    WindowFinder m_windows;

    ComponentsListView* list() const { return m_page->list(); }
    QString status(const QString& name) const {
        list()->select(name);
        return list()->currentIndex().data(ComponentRoles::Status).toString();
    }
    void press(const QString& name) {
        list()->select(name);
        const QRect place = list()->visualRect(list()->currentIndex());
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, {place.right() - 30, place.center().y()});
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("needs_vcamp140").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        QVERIFY(offerSampleLibraries());
        QFile recipes(Paths::bottlesDataDir() + "/dependency.json");
        QVERIFY(recipes.open(QIODevice::WriteOnly) && recipes.write(Recipes) > 0);
        recipes.close();
        QVERIFY(bottlesJson("createBottles", {Bottle, ""})["ok"].toBool());
        m_page = std::make_unique<ComponentsPage>();
        m_page->setBottle(Bottle, bottlesJson("get", {Bottle}).object());
        m_page->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    }
    void cleanupTestCase() {
        killAllWineServers();
        m_page.reset();
    }

    /// Three at once: the one in the middle has no source, and the last comes all the same.
    void queued() {
        for (const char* name : {"sample_set", "sample_gone", "sample_note"})
            press(name);
        QTRY_COMPARE_WITH_TIMEOUT(status("sample_note"), QString("Installed"), LongMs);
        QCOMPARE(status("sample_set"), QString("Installed"));
        QCOMPARE(status("sample_part"), QString("Installed"));
        QCOMPARE(status("sample_gone"), QString("Installation Failed"));
        QVERIFY(m_page->findChild<QLabel*>("component_reason")->text().contains("no-such.tar"));
        QCOMPARE(bottlesJson("get", {Bottle})["Installed_Dependencies"].toArray(),
                 QJsonArray({"sample_part", "sample_set", "sample_note"}));
        QFile registry(bottlesJson("get", {Bottle})["Path"].toString() + "/user.reg");
        const auto isWritten = [&registry] {
            registry.close();
            return registry.open(QIODevice::ReadOnly) && registry.readAll().contains("\"Note\"=\"here\"");
        };
        QTRY_VERIFY_WITH_TIMEOUT(isWritten(), LongMs);
    }

    /// The program needs both libraries. While it runs, the user is asked before anything is installed.
    void usedAndAskedFor() {
        callBottles("run_command", {Bottle, "Z:" + sample("needs_vcamp140").replace('/', '\\')});
        const WindowInfo window = m_windows.waitForTitle(SampleTitle, LongMs);
        QVERIFY(window.id);
        press("sample_note");
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeModalWidget(), LongMs);
        const QPointer<Fenk::Dialog> question =
            qobject_cast<Fenk::Dialog*>(QApplication::activeModalWidget());
        QVERIFY(question && m_windows.byTitle(SampleTitle).id);
        question->button(1)->click();
        QTRY_COMPARE_WITH_TIMEOUT(status("sample_note"), QString("Installed"), LongMs);
        QVERIFY(m_windows.waitUntilGone(window.id, LongMs));
    }
};

QTEST_MAIN(ComponentInstallTest)
#include "ComponentInstallTest.moc"
