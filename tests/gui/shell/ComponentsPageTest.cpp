#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>

#include "backend/ComponentManager.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/components/BottleDependencies.h"
#include "shell/configuration/components/ComponentRoles.h"
#include "shell/configuration/components/ComponentsListView.h"
#include "shell/configuration/components/ComponentsPage.h"
#include "shell/configuration/components/DependencyFacts.h"
#include "shell/configuration/components/InstallProtonDialog.h"
#include "shell/configuration/components/ProtonItemRow.h"
#include "shell/configuration/components/WineVersionCombobox.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

/// The page of components of the bottle "office" over a fake service, with the components alpha, beta and
/// gamma, of which gamma needs beta.
class ComponentsPageTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    QPointer<ComponentsPage> m_page;

    void startService() {
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
    }
    ComponentsListView* list() const { return m_page->list(); }
    void load(const QJsonArray& installed = {}) {
        m_page->setBottle("office", {{"Installed_Dependencies", installed}});
    }
    QModelIndex row(const QString& name) const {
        const QModelIndexList found =
            list()->model()->match(list()->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        return found.value(0);
    }
    QString status(const QString& name) const { return row(name).data(ComponentRoles::Status).toString(); }
    void press(const QString& name) {
        list()->select(name);
        const QRect place = list()->visualRect(row(name));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, {place.right() - 30, place.center().y()});
    }
    template <class Widget = QWidget>
    Widget* find(const QString& name) const {
        return m_page->findChild<Widget*>(name);
    }
    QString tips() const { return find<QLabel>("installing_tips")->text(); }
    QStringList sent(const QString& method) {
        QStringList names;
        for (const TestSupport::RecordedCall& call : m_service->calls(method))
            names += call.arguments.last().toString();
        return names;
    }
    bool done(const QString& name, const QString& result, const QString& bottle = "office") {
        return m_service->emitSignal("dependencySetupDone", "sss", {bottle, name, result});
    }
    bool download(const QString& name, const QString& bottle = "office") {
        return m_service->emitSignal("dependencyDownloadProgress", "ssuus",
                                     {bottle, name, 3 << 20, 12 << 20, "downloading"});
    }
    bool describe(const QString& name, const QString& text) {
        return m_service->emitSignal("dependencySetupDescription", "sss", {"office", name, text});
    }
    static Fenk::Dialog* question() { return qobject_cast<Fenk::Dialog*>(QApplication::activeModalWidget()); }

private Q_SLOTS:
    void initTestCase() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_home.write(".local/share/lumora-wine-bottles/dependency.json",
                     R"({"alpha": {"Description": "First of all", "dlls": ["quickdll"]},
                         "beta": {"Description": "Second"},
                         "mfc40": {"Description": "Old classes"},
                         "gamma": {"Description": "Third", "needs": ["beta"]}})");
    }
    void init() {
        startService();
        m_service->setText("describe", R"([{"name": "alpha", "available": true, "files": [
            {"name": "setup.exe", "size": 5000000, "host": "files.example.org"}]}])");
        m_page = new ComponentsPage;
        m_page->resize(640, 560);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowActive(m_page));
    }
    void cleanup() {
        delete m_page;
        m_service.reset();
    }

    void wholeWay() {
        QSignalSpy started(list(), &ComponentsListView::startSetup);
        QSignalSpy ended(list(), &ComponentsListView::setupDone);
        load({"beta"});
        QCOMPARE(status("beta"), QString("Installed"));
        QCOMPARE(row("beta").data(Qt::ToolTipRole).toString(), QString("Second"));
        press("alpha");
        QCOMPARE(m_service->waitForCall("installDependency").arguments, QJsonArray({"office", "alpha"}));
        QCOMPARE(started.takeFirst(), QVariantList({"alpha", true}));
        QCOMPARE(status("alpha"), QString("Waiting for Download"));
        QCOMPARE(tips(), QString("Installing alpha..."));
        QVERIFY(find("components_tips_widget")->isVisible());
        QVERIFY(download("alpha", "home") && download("beta") && describe("beta", "x") && download("alpha"));
        QTRY_COMPARE(status("alpha"), QString("3M/12M"));
        QVERIFY(describe("alpha", "Unpacking a.cab"));
        QTRY_COMPARE(status("alpha"), QString("Installing"));
        QVERIFY(find<QLabel>("installing_detail")->text().contains("Unpacking a.cab"));
        const QString result = "{\"ok\":true,\"data\":\"[\\\"gamma\\\"]\"}";
        QVERIFY(done("alpha", result, "home") && done("alpha", result) && done("alpha", "{}"));
        QTRY_COMPARE(status("gamma"), QString("Installed"));
        QCOMPARE(status("alpha"), QString("Installed"));
        QTRY_VERIFY(!find("components_tips_widget")->isVisible());
        QCOMPARE(ended.count(), 1);
        press("alpha");
        QCOMPARE(m_service->waitForCall("reinstallDependency").arguments, QJsonArray({"office", "alpha"}));
        QCOMPARE(status("alpha"), QString("Waiting for Download"));
    }

    void underWayBefore() {
        QSignalSpy started(list(), &ComponentsListView::startSetup);
        m_service->setText("getInstallingDependency", "beta");
        m_service->setText("queuedDependencies", R"(["beta", "gamma"])");
        load();
        QTRY_COMPARE(status("gamma"), QString("Waiting for Download"));
        QCOMPARE(status("beta"), QString("Installing"));
        QCOMPARE(started.takeFirst(), QVariantList({"beta", false}));
        // An answer that comes late names what has ended meanwhile.
        m_service->setText("queuedDependencies", R"(["gamma"])");
        QVERIFY(done("beta", R"({"ok":true})"));
        QTRY_COMPARE(status("beta"), QString("Installed"));
        load({"beta"});
        m_service->waitForCall("queuedDependencies", 2);
        QTRY_COMPARE(status("beta"), QString("Installed"));
        // Somebody else's, which begins later.
        m_service->setText("queuedDependencies", R"(["alpha"])");
        QVERIFY(done("gamma", R"({"ok":true})") && download("alpha"));
        QTRY_COMPARE(status("alpha"), QString("Installing"));
    }

    void refused_data() {
        const Table<QString, QString, QString> row("answer", "signal", "toolTip");
        row("by the call", "no such thing", "", "no such thing");
        row("by the signal", "", R"({"ok":false,"error":"the disk is full"})", "the disk is full");
        row("by both", "no such thing", R"({"ok":false,"error":"later"})", "no such thing");
        row("malformed", "", "torn{", "First of all");
    }
    void refused() {
        QFETCH(QString, answer);
        QFETCH(QString, signal);
        if (!answer.isEmpty())
            m_service->setError("installDependency", answer);
        load();
        press("alpha");
        m_service->waitForCall("installDependency");
        if (!answer.isEmpty())
            QTRY_COMPARE(status("alpha"), QString("Installation Failed"));
        if (!signal.isEmpty())
            QVERIFY(done("alpha", signal));
        QTRY_COMPARE(status("alpha"), QString("Installation Failed"));
        QTEST(row("alpha").data(Qt::ToolTipRole).toString(), "toolTip");
        m_service->setText("installDependency", "");
        QTest::keyClick(list(), Qt::Key_Return);
        QCOMPARE(status("alpha"), QString("Waiting for Download"));
    }

    void fileByHand() {
        m_service->setAnswers("takeFile", {{{"text", R"({"ok":false,"error":"another file"})"}},
                                           {{"text", R"({"ok":true,"file":"setup.exe"})"}}});
        load();
        press("alpha");
        QVERIFY(done("alpha", R"({"ok":false,"error":"no network"})"));
        auto* choose = find<QAbstractButton>("component_file_btn");
        QTRY_VERIFY(choose->isVisible());
        QCOMPARE(find<QLabel>("component_reason")->text(), QString("no network"));
        QVERIFY(find<QLabel>("component_facts")->isVisible());
        const QString file = m_home.write("setup.exe", "x");
        for (const char* expected : {"Installation Failed", "Waiting for Download"}) {
            choose->click();
            auto* dialog = find<QFileDialog>("component_file_dialog");
            Q_EMIT dialog->fileSelected(file);
            delete dialog;
            QTRY_COMPARE(status("alpha"), QString(expected));
            QTRY_VERIFY(expected[0] == 'W' || m_page->findChild<Fenk::FloatingMessage*>());
        }
        QCOMPARE(m_service->calls("takeFile").last().arguments, QJsonArray({"office", "alpha", file}));
    }

    /// One fails, one is taken back while it waits, one while it runs.
    void queue() {
        load();
        for (const char* name : {"alpha", "beta", "gamma"})
            press(name);
        m_service->waitForCall("installDependency", 3);
        QCOMPARE(sent("installDependency"), QStringList({"alpha", "beta", "gamma"}));
        QVERIFY(find<QLabel>("installing_detail")->text().contains("2 more waiting"));
        QVERIFY(done("alpha", R"({"ok":false,"error":"no"})"));
        QTRY_COMPARE(tips(), QString("Installing beta..."));
        press("gamma");
        QCOMPARE(m_service->waitForCall("cancelDependency").arguments, QJsonArray({"office", "gamma"}));
        const QString cancelled = R"({"ok":false,"reasons":[{"code":"cancelled"}]})";
        QVERIFY(done("gamma", cancelled));
        QTRY_COMPARE(status("gamma"), QString());
        auto* cancel = find<QAbstractButton>("cancel_btn");
        // Unnamed once it is known to be this one's turn.
        QVERIFY(download("beta"));
        QTRY_COMPARE(status("beta"), QString("3M/12M"));
        m_service->setAnswers("cancelInstallingDependency", {{{"error", "no"}}, {{"text", ""}}});
        cancel->click();
        QVERIFY(!cancel->isEnabled());
        QTRY_VERIFY(cancel->isEnabled());
        cancel->click();
        QCOMPARE(m_service->waitForCall("cancelInstallingDependency").arguments, QJsonArray({"office"}));
        QVERIFY(done("beta", cancelled));
        QTRY_COMPARE(status("beta"), QString());
        press("beta");
        QVERIFY(cancel->isEnabled());
        // Somebody else wants it, too, and then nobody does.
        m_service->setText("queuedDependencies", R"(["gamma","beta"])");
        cancel->click();
        QCOMPARE(m_service->waitForCall("cancelDependency", 2).arguments, QJsonArray({"office", "beta"}));
        QTRY_COMPARE(status("gamma"), QString("Installing"));
        QCOMPARE(status("beta"), QString("Waiting for Download"));
        m_service->setText("queuedDependencies", "[]");
        press("beta");
        QTRY_COMPARE(status("beta"), QString());
    }

    void programsRunning_data() {
        const Table<int, QString, int, QString> row("button", "meanwhile", "calls", "status");
        row("close them", 1, "", 4, "Waiting for Download");
        row("leave them", 0, "", 2, "");
        row("close them, window closed", 1, "window closed", 4, "");
        row("close them, another service", 1, "another service", 2, "Waiting for Download");
    }
    void programsRunning() {
        QFETCH(int, button);
        QFETCH(QString, meanwhile);
        QFETCH(int, calls);
        load();
        press("alpha");
        press("beta");
        const QString busy = R"({"ok":false,"busy":["notepad.exe"]})";
        QVERIFY(done("alpha", busy));
        QTRY_VERIFY(question());
        // Somebody else's, which the service is asked about.
        m_service->setText("queuedDependencies", R"(["gamma"])");
        QVERIFY(done("beta", busy) && download("gamma"));
        QTRY_COMPARE(status("gamma"), QString("Installing"));
        if (meanwhile == "another service") {
            m_service->kill();
            QTRY_COMPARE(status("gamma"), QString("Installation Failed"));
            startService();
        }
        m_service->setHeld("killWineServer", "");
        QPointer<Fenk::Dialog> asked = question();
        asked->button(button)->click();
        QTRY_VERIFY(!asked);
        QVERIFY(!question());
        if (button)
            m_service->waitForCall("killWineServer");
        if (meanwhile == "window closed")
            delete m_page;
        QCOMPARE(m_service->release(), button);
        m_service->waitForCall("installDependency", calls);
        QCOMPARE(m_service->calls("installDependency").size(), calls);
        if (m_page)
            QTEST(status("beta"), "status");
    }

    void serviceIsLost() {
        load();
        press("alpha");
        press("beta");
        QVERIFY(download("alpha"));
        QTRY_COMPARE(status("alpha"), QString("3M/12M"));
        m_service->kill();
        QTRY_COMPARE(status("alpha"), QString("Installation Failed"));
        QCOMPARE(status("beta"), QString("Installation Failed"));
        QVERIFY(!row("beta").data(Qt::ToolTipRole).toString().isEmpty());
        QVERIFY(!find("components_tips_widget")->isVisible());
        startService();
        load({"alpha"});
        QCOMPARE(row("alpha").data(ComponentRoles::Action).toInt(), int(DependencyState::Reinstall));
        press("beta");
        QVERIFY(done("beta", R"({"ok":true})"));
        QTRY_COMPARE(status("beta"), QString("Installed"));
    }

    void windowIsClosed() {
        m_service->setHeld("installDependency", "");
        load();
        press("alpha");
        m_service->waitForCall("installDependency");
        delete m_page;
        QCOMPARE(m_service->release(), 1);
        QVERIFY(m_service->calls("cancelInstallingDependency").isEmpty());
    }

    void search() {
        load();
        auto* edit = find<QLineEdit>("components_search_edit");
        edit->setText("QuickDLL");
        QCOMPARE(list()->model()->rowCount(), 1);
        QCOMPARE(list()->currentName(), QString("alpha"));
        QTRY_COMPARE(row("alpha").data(ComponentRoles::Detail).toString(), QString("5.0 MB"));
        QCOMPARE(find<QLabel>("component_facts")->text(),
                 QString("From files.example.org: setup.exe (5.0 MB)."));
        QCOMPARE(m_page->filter("gamma"), 1);
        QCOMPARE(list()->currentName(), QString("gamma"));
        QCOMPARE(find<QLabel>("component_facts")->text(), QString("Installed first: beta."));
        m_page->filter("visual c++ 4");
        QVERIFY(row("mfc40").isValid());
        m_page->filter("<b>.*");
        QVERIFY(find("components_placeholder")->isVisible());
        QVERIFY(!find("component_details")->isVisible());
        QTest::keyClick(edit, Qt::Key_Escape);
        QVERIFY(list()->model()->rowCount() >= 3);
    }

    /// An answer that was asked for before the facts were forgotten is dropped.
    void factsAreAskedOnce() {
        DependencyFacts* facts = list()->dependencies()->facts();
        const auto described = [](const char* size) {
            return QString(R"([{"name":"alpha","available":true,"files":[{"name":"a","size":%1}]}])")
                .arg(size);
        };
        m_service->setHeld("describe", described("1000000"));
        load();
        m_service->waitForCall("describe");
        const int asked = m_service->calls("describe").size();
        facts->fetch(list()->names());
        QCOMPARE(m_service->calls("describe").size(), asked);
        m_service->setText("describe", described("2000000"));
        facts->forgetAll();
        facts->fetch(list()->names());
        QTRY_COMPARE(row("alpha").data(ComponentRoles::Detail).toString(), QString("2.0 MB"));
        QCOMPARE(m_service->release(), asked);
        QVERIFY(done("beta", R"({"ok":false})"));
        QTRY_COMPARE(status("beta"), QString("Installation Failed"));
        QCOMPARE(row("alpha").data(ComponentRoles::Detail).toString(), QString("2.0 MB"));
    }

    void stateFromOutside_data() {
        const Table<QJsonObject, QString, QString> row("object", "status", "toolTip");
        row("failed", {{"status", "failed"}, {"description", "why"}}, "Installation Failed", "why");
        row("failed without a reason", {{"status", "failed"}}, "Installation Failed", "First of all");
        row("another", {{"status", "Importing"}}, "Importing", "First of all");
    }
    void stateFromOutside() {
        QFETCH(QJsonObject, object);
        load();
        list()->updateComponentState("no-such-row", object);
        list()->updateComponentState("alpha", object);
        QTEST(status("alpha"), "status");
        QTEST(row("alpha").data(Qt::ToolTipRole).toString(), "toolTip");
    }

    void keysAndNames() {
        load({"beta"});
        QCOMPARE(TestSupport::outOfReach(m_page), QString());
        QCOMPARE(row("beta").data(Qt::AccessibleTextRole).toString(), QString("beta\nSecond\nInstalled"));
        for (const QAbstractButton* button : m_page->findChildren<QAbstractButton*>()) {
            if (button->isVisible() && button->focusPolicy() != Qt::NoFocus)
                QVERIFY(!QAccessible::queryAccessibleInterface(const_cast<QAbstractButton*>(button))
                             ->text(QAccessible::Name)
                             .isEmpty());
        }
        QSignalSpy imports(m_page, &ComponentsPage::importRequested);
        QSignalSpy exports(m_page, &ComponentsPage::exportRequested);
        find<QAbstractButton>("import_deps_btn")->click();
        find<QAbstractButton>("export_deps_btn")->click();
        QCOMPARE(imports.count() * exports.count(), 1);
        // What is installed is not installed again by Return, but by its button.
        list()->select("beta");
        list()->setFocus();
        QTest::keyClick(list(), Qt::Key_Return);
        QCOMPARE(status("beta"), QString("Installed"));
        QTest::keyClick(find("component_action_btn"), Qt::Key_Space);
        QCOMPARE(m_service->waitForCall("reinstallDependency").arguments, QJsonArray({"office", "beta"}));
    }

    void proton() {
        m_service->setJson(
            "Components.list",
            QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"wine", "ge-proton9"}},
                                               {"supported", QJsonArray{"lumora-proton9", "wine"}}}}});
        bool isRead = false;
        ComponentManager::instance()->update(this, [&isRead] { isRead = true; });
        QTRY_VERIFY(isRead);
        InstallProtonDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QCOMPARE(TestSupport::outOfReach(&dialog), QString());
        const auto text = [&dialog](const QString& row, const QString& name) {
            QWidget* part = dialog.findChild<ProtonItemRow*>(row)->findChild<QWidget*>(name);
            return part->property("text").toString();
        };
        QCOMPARE(text("ge-proton9", "proton_status") + text("ge-proton9", "proton_btn"),
                 QString("installedView"));
        QCOMPARE(text("lumora-proton9", "proton_btn"), QString("Install"));
        WineVersionCombobox versions;
        versions.addItem("lumora-wine10-stable");
        versions.showPopup();
        versions.hidePopup();
        QCOMPARE(versions.currentText(), QString("lumora-wine10-stable"));
        QCOMPARE(versions.itemText(0) + ' ' + versions.itemText(1) + ' ' + versions.itemText(2),
                 QString("wine ge-proton9 lumora-proton9"));
        QVERIFY(m_service->emitSignal("/com/lumora/Manager/Components", "com.lumora.Manager.Components",
                                      "refresh", "s", {R"({"runner":{"installed":["lumora-proton9"]}})"}));
        QTRY_COMPARE(text("lumora-proton9", "proton_btn"), QString("View"));
        auto* problem = dialog.findChild<QLabel*>("proton_problem");
        auto* button = dialog.findChild<QWidget*>("ge-proton9")->findChild<QAbstractButton*>();
        button->click();
        QTRY_VERIFY(problem->isVisible());
        QVERIFY(m_service->takeName("com.home.appstore.client"));
        button->click();
        QCOMPARE(m_service->waitForCall("openBusinessUri").arguments,
                 QJsonArray({"app_detail_info/lumora-ge-proton9"}));
        QVERIFY(!problem->isVisible());
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;
    Fenk::Application application(argc, argv);
    ComponentsPageTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ComponentsPageTest.moc"
