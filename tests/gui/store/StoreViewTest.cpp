#include <QComboBox>
#include <QNetworkReply>
#include <QPointer>
#include <QPushButton>

#include "StoreFixture.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/window/Dialog.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ProgramRuns.h"
#include "programs/RunStateButton.h"
#include "store/images/NetworkImageLoader.h"
#include "support/KeyWalk.h"

using AppStoreViewUtils::ButtonState;
using TestSupport::LogCapture;
using TestSupport::Table;
using Page = StoreAppGridScrollView::Page;

class StoreViewTest : public StoreFixture {
    Q_OBJECT

    void open() {
        m_view = std::make_unique<AppStoreView>();
        m_view->resize(750, 620);
        m_view->show();
        m_view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }
    StoreAppGridScrollView* catalogue() const { return m_view->catelogWidget()->grid(); }
    QString header() const { return m_view->findChild<Fenk::Label*>("appstore_catelog_header")->text(); }
    void openUntilShown() {
        open();
        QTRY_COMPARE(shownPage(catalogue()), int(Page::Grid));
        QTRY_VERIFY(card(catalogue(), 0));
    }
    static AppStoreViewUtils::StoreAppModelData appWithIcon(const QString& address) {
        OpenAPI::VeskClientAppInfo app;
        app.setIconSaveKey(address);
        return {app, {}, {}};
    }
    static QIcon icon(const AppStoreItemModel& model, int row) {
        return model.index(row, 0).data(Qt::DecorationRole).value<QIcon>();
    }
    QString face(int row) const { return card(catalogue(), row)->button()->text(); }

private Q_SLOTS:
    void init() { StoreFixture::init(); }
    void cleanup() {
        m_view.reset();
        StoreFixture::cleanup();
    }

    void asksWhenItIsShown() {
        m_view = std::make_unique<AppStoreView>();
        QSignalSpy fetched(m_view.get(), &AppStoreView::categoriesFetched);
        QCoreApplication::processEvents();
        QVERIFY(m_server->requests.isEmpty());
        m_view->show();
        QCOMPARE(shownPage(catalogue()), int(Page::Loading));
        QTRY_COMPARE(catalogue()->appCount(), 20);
        QTRY_COMPARE(fetched.size(), 1);
        QCOMPARE(fetched[0][0].value<QList<OpenAPI::VeskClientCategoryInfo>>().size(), 2);
        QCOMPARE(requests(apps(0, 1)), 1);
        QCOMPARE(requests("categories"), 1);
        QCOMPARE(header(), QString("All Apps"));
        m_view->hide();
        m_view->show();
        QCOMPARE(m_server->requests.count(QString("vesk/client/%1@0").arg(apps(0, 1))), 1);
    }

    void categoryAndOrderStartAFreshList() {
        answer(apps(3, 1), someApps(50, 2));
        answer(apps(3, 1, "score"), someApps(51, 1));
        openUntilShown();
        QTRY_COMPARE(requests("categories"), 1);
        m_view->selectCategory(77);  // unknown
        QCOMPARE(shownPage(catalogue()), int(Page::Grid));
        QTRY_VERIFY((m_view->selectCategory(3), header() == "Music"));
        QCOMPARE(shownPage(catalogue()), int(Page::Loading));
        QTRY_COMPARE(catalogue()->appCount(), 2);
        auto* order = m_view->findChild<QComboBox*>("appstore_catelog_sort");
        QCOMPARE(order->itemText(1), QString("App Installations"));
        order->setCurrentIndex(2);
        QTRY_COMPARE(catalogue()->appCount(), 1);
        QCOMPARE(requests(apps(77, 1)), 0);
        answer(apps(0, 1, "score"), someApps(70, 4));
        auto* all = m_view->findChild<QPushButton*>("appstore_catelog_all");
        QVERIFY(all->isVisible());
        all->click();
        QTRY_COMPARE(catalogue()->appCount(), 4);
        QCOMPARE(header(), QString("All Apps"));
        QVERIFY(!all->isVisible());
    }

    void aNewRequestEndsTheOneBefore() {
        answer(apps(3, 1), someApps(50, 2));
        answer(apps(9, 1), someApps(60, 3));
        openUntilShown();
        QTRY_VERIFY((m_view->selectCategory(3), header() == "Music"));
        m_view->selectCategory(9);
        QTRY_COMPARE(catalogue()->appCount(), 3);
        QCOMPARE(catalogue()->list()->appModel()->index(0, 0).data().toString(), QString("App 60"));
    }

    void pagesFollowAtTheEnd() {
        answer(apps(0, 2), someApps(21, 20));
        answer(apps(0, 3), {});
        openUntilShown();
        toTheEnd(catalogue());
        const auto* strip = m_view->catelogWidget()->findChild<QWidget*>("scrollarea_loadingwidget");
        QVERIFY(strip->isVisible());
        QTRY_COMPARE(catalogue()->appCount(), 40);
        QVERIFY(!strip->isVisible());
        toTheEnd(catalogue());
        QTRY_VERIFY(m_view->findChild<Fenk::FloatingMessage*>());
        QCOMPARE(m_view->findChild<Fenk::FloatingMessage*>()->text(), QString("No more data to fetch"));
        QCOMPARE(catalogue()->appCount(), 40);
        QCOMPARE(shownPage(catalogue()), int(Page::Grid));
        toTheEnd(catalogue());
        QTRY_COMPARE(requests(apps(0, 3)), 2);  // not a fourth
    }

    void failures_data() {
        const Table<QString, int, QString> row("path", "code", "log");
        row("the list, by its code", apps(0, 1), 500, "list apps error: broken");
        row("the list, by the status", apps(0, 1), 0, "failed to list apps: ");
        row("the categories, by their code", "categories", 500, "get categories error: broken");
        row("the categories, by the status", "categories", 0,
            "failed to get categories: ContentNotFoundError, ");
    }
    void failures() {
        QFETCH(QString, path);
        QFETCH(int, code);
        QFETCH(QString, log);
        LogCapture lines;
        const QByteArray good = m_server->files.take(path);
        if (code)
            answer(path, {}, code);
        open();
        QTRY_COMPARE(shownPage(catalogue()), int(Page::Failed));
        QTRY_VERIFY2(lines.contains(QtWarningMsg, log), qPrintable(lines.text()));
        QTRY_COMPARE(m_server->requests.filter("vesk").size(), 2);
        QCOMPARE(TestSupport::outOfReach(m_view.get()), QString());
        m_server->files[path] = good;
        m_view->catelogWidget()->findChild<QWidget*>("store_refresh")->findChild<QPushButton*>()->click();
        QTRY_COMPARE(shownPage(catalogue()), int(Page::Grid));
        QTRY_COMPARE(requests("categories"), 2);
    }

    void failedPageKeepsTheRows() {
        openUntilShown();
        toTheEnd(catalogue());
        QTRY_COMPARE(shownPage(catalogue()), int(Page::Failed));
        QCOMPARE(catalogue()->appCount(), 20);
        answer(apps(0, 2), someApps(21, 5));
        Q_EMIT catalogue()->retry();
        QTRY_COMPARE(catalogue()->appCount(), 25);
    }

    void oneSearchForAPause() {
        answer(search("abc"), someApps(1, 20));
        answer(search("abc", 2), someApps(21, 3));
        answer(search("none"), {});
        answer(search("bad"), {}, 500);
        LogCapture lines;
        openUntilShown();
        StoreAppGridScrollView* found = m_view->searchWidget();
        for (const char* text : {"a", "ab", "abc"})
            m_view->onSearchTextChanged(text);
        QCOMPARE(m_view->currentWidget(), m_view->catelogWidget());
        QTRY_COMPARE(found->appCount(), 20);
        QCOMPARE(m_server->requests.filter("search").size(), 1);
        toTheEnd(found);
        QTRY_COMPARE(found->appCount(), 23);
        m_view->onSearchTextChanged("none");
        QTRY_COMPARE(shownPage(found), int(Page::Empty));
        QCOMPARE(found->appCount(), 0);
        m_view->onSearchTextChanged("bad");
        QTRY_COMPARE(shownPage(found), int(Page::Failed));
        QVERIFY(lines.contains(QtWarningMsg, "failed to search app: broken"));
        answer(search("bad"), someApps(1, 1));
        Q_EMIT found->retry();
        QTRY_COMPARE(shownPage(found), int(Page::Grid));
        const int asked = m_server->requests.filter("vesk").size();
        m_view->onSearchTextChanged({});
        QTRY_COMPARE(m_view->currentWidget(), m_view->catelogWidget());
        QCOMPARE(m_server->requests.filter("vesk").size(), asked);
    }

    void badRecordsAreShownAsFarAsTheyGo() {
        answer(apps(0, 1),
               {5, QJsonObject{{"appId", "12"}, {"appName", "<b>Bold</b>\n"}, {"score", 9}}, app(2)});
        openUntilShown();
        QCOMPARE(catalogue()->appCount(), 2);
        const StoreAppItemUI* bad = card(catalogue(), 0);
        QCOMPARE(bad->findChild<Fenk::Label*>("storeapp_name")->text(), QString("<b>Bold</b>"));
        QCOMPARE(bad->findChild<Fenk::Label*>("storeapp_name")->textFormat(), Qt::PlainText);
        QCOMPARE(face(0), QString("Install"));
    }

    void buttonStates_data() {
        const Table<bool, bool, bool, int> row("isRunning", "isInstalled", "isInstalling", "state");
        row("new", false, false, false, 2);
        row("being installed", false, false, true, 3);
        row("installed", false, true, false, 0);
        row("installed and installing", false, true, true, 0);
        row("running", true, true, false, 1);
        row("running and all", true, true, true, 1);
    }
    void buttonStates() {
        QFETCH(bool, isRunning);
        QFETCH(bool, isInstalled);
        QFETCH(bool, isInstalling);
        QTEST(int(AppStoreViewUtils::buttonState(isRunning, isInstalled, isInstalling)), "state");
    }

    void scores() {
        QCOMPARE(AppStoreViewUtils::scoreText(-1), QString("No Ratings"));
        QCOMPARE(AppStoreViewUtils::scoreText(3), QString("Some functions are available"));
        QCOMPARE(AppStoreViewUtils::scoreText(9), QString("Nearly perfect operation"));
    }

    void cardFollowsItsProgram() {
        const QJsonObject programs{{"b", QJsonObject{{"name", "Other"}}},
                                   {"c", QJsonObject{{"name", "App 3"}}}};
        m_service->setBottle("program-info2", {{"Path", "/x"}, {"External_Programs", programs}});
        m_service->setBottle("program-3", {{"Path", "/x"}, {"External_Programs", programs}});
        LogCapture lines;
        openUntilShown();
        QTRY_COMPARE(face(2), QString("Run"));
        QTRY_COMPARE(face(1), QString("Run"));
        const auto* model = catalogue()->list()->appModel();
        QCOMPARE(model->app(model->index(1, 0)).program(), (ProgramRef{"program-info2", "b"}));
        QCOMPARE(model->app(model->index(2, 0)).programId, QString("c"));
        QTRY_VERIFY(lines.contains(QtWarningMsg, "Failed to get programId for appId: 1"));
        QCOMPARE(face(0), QString("Install"));

        ProgramRuns::instance()->setStarting({"program-3", "c"}, true);
        QCOMPARE(face(2), QString("Quit"));
        ProgramRuns::instance()->setStarting({"program-3", "c"}, false);
        QCOMPARE(face(2), QString("Run"));

        auto* states = AppItemWidgetStateManager::instance();
        states->startSetup("4");
        QCOMPARE(face(3), QString("Installing"));
        m_service->setBottle("program-4", {{"Path", "/x"}, {"External_Programs", programs}});
        states->onSetupingYmlDone("4", {}, false);
        QTRY_COMPARE(face(3), QString("Run"));
        m_service->setBottle("program-4", {});
        m_service->emitSignal("program_deleted", "ss", {"program-4", "b"});
        QTRY_COMPARE(face(3), QString("Install"));
    }

    void failedSetupIsTold() {
        openUntilShown();
        catalogue()->focusApps();
        QCOMPARE(QApplication::focusWidget(), card(catalogue(), 0));
        press(Qt::Key_Return);
        QTRY_VERIFY(m_view->findChild<Fenk::Dialog*>("store_setup_error"));
        QVERIFY(m_view->findChild<Fenk::Dialog*>("store_setup_error")
                    ->message()
                    .startsWith("Failed to fetch setup manifest"));
        QTRY_COMPARE(face(0), QString("Install"));
    }

    void keysAndAssistiveToolsReachEveryCard() {
        answer(apps(0, 2), {});
        openUntilShown();
        catalogue()->focusApps();
        press(Qt::Key_Right);
        press(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), card(catalogue(), 3));
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), card(catalogue(), 3)->button());
        press(Qt::Key_Up);
        QCOMPARE(QApplication::focusWidget(), card(catalogue(), 1));
        press(Qt::Key_End);
        QCOMPARE(QApplication::focusWidget(), card(catalogue(), 19));
        QVERIFY(!card(catalogue(), 0));  // out of sight
        const auto* accessible = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
        QCOMPARE(accessible->role(), QAccessible::ListItem);
        QCOMPARE(accessible->text(QAccessible::Name), QString("App 20, Install"));
        // A list that was scrolled with the wheel has a card in sight for the Tab key.
        QApplication::focusWidget()->clearFocus();
        catalogue()->list()->verticalScrollBar()->setValue(0);
        QTRY_VERIFY(card(catalogue(), 0) && card(catalogue(), 0)->focusPolicy() == Qt::StrongFocus);
    }

    void failedIconIsAskedForAgain() {
        const QByteArray picture =
            TestSupport::readFile(TEST_SOURCE_DIR "/src/frontend/resources/images/search_history.png");
        AppStoreItemModel model;
        model.appendApps({appWithIcon(m_server->address("icons/late.png")),
                          appWithIcon("file://" + m_home.write("local.png", picture))});
        QTRY_VERIFY(!icon(model, 0).isNull() && !icon(model, 1).isNull());
        const qint64 failed = icon(model, 0).cacheKey();
        QCOMPARE(icon(model, 1).cacheKey(), failed);
        m_server->files["late.png"] = picture;
        model.requestIcon(model.index(0, 0));
        QCOMPARE(icon(model, 0).cacheKey(), failed);  // meanwhile
        QTRY_VERIFY(icon(model, 0).cacheKey() != failed);
    }

    void clearedListTakesItsRequestsBack() {
        const QString silent = m_server->address("silent/icon.png");
        AppStoreItemModel model;
        model.appendApps({appWithIcon(silent), appWithIcon(silent)});
        auto* loader = NetworkImageLoader::instance();
        QPointer<QNetworkReply> reply = loader->load(QUrl(silent));
        model.clearApps();
        QVERIFY(reply->isRunning());  // another waits
        model.appendApps({appWithIcon(silent)});
        loader->release(QUrl(silent));
        QVERIFY(reply->isRunning());
        model.clearApps();
        QVERIFY(!reply->isRunning());
    }

    void fewCardsForManyApps() {
        for (const char* name : {"0.png", "1.png", "2.png"})
            m_server->files[name] =
                TestSupport::readFile(TEST_SOURCE_DIR "/src/frontend/resources/images/search_history.png");
        answer(apps(0, 1), someApps(1, 400));
        openUntilShown();
        QScrollBar* bar = catalogue()->list()->verticalScrollBar();
        for (int value = 0; value < bar->maximum(); value += 150)
            bar->setValue(value);
        QVERIFY(m_view->findChildren<StoreAppItemUI*>().size() <= 20);
        // One request for each picture.
        QTRY_COMPARE(m_server->requests.filter("icons").size(), 3);
        QTRY_VERIFY(!card(catalogue(), catalogue()->list()->indexAt({5, 5}).row())
                         ->index()
                         .data(Qt::DecorationRole)
                         .value<QIcon>()
                         .isNull());
    }

private:
    std::unique_ptr<AppStoreView> m_view;
};

int main(int argc, char** argv) {
    return runStoreTest<StoreViewTest>(argc, argv);
}
#include "StoreViewTest.moc"
