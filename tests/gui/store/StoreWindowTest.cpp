#include "StoreFixture.h"
#include "fenk/controls/SearchEdit.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/SidebarView.h"
#include "shell/library/AppLocalView.h"

/// The store's page in the main window.
class StoreWindowTest : public StoreFixture {
    Q_OBJECT

    SidebarView* sidebar() const { return m_window->indexView()->sidebar(); }
    QModelIndex row(SidebarView::Group group, int number) const {
        const auto* model = sidebar()->model();
        return model->index(number, 0, model->index(group, 0));
    }
    void choose(const QModelIndex& index) {
        QTest::mouseClick(sidebar()->viewport(), Qt::LeftButton, {}, sidebar()->visualRect(index).center());
    }

private Q_SLOTS:
    void init() {
        StoreFixture::init();
        m_window = std::make_unique<Mainwindow>();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(m_window->indexView()->storeView());
    }
    void cleanup() {
        m_window.reset();
        StoreFixture::cleanup();
    }

    void categoriesReplaceTheFirstRow() {
        answer(apps(9, 1), someApps(60, 3));
        const AppStoreView* store = m_window->indexView()->storeView();
        QCOMPARE(row(SidebarView::AllApps, 0).data().toString(), QString("All Apps"));
        QVERIFY(m_server->requests.isEmpty());
        choose(row(SidebarView::AllApps, 0));
        QVERIFY(store->isVisible());
        QTRY_COMPARE(row(SidebarView::AllApps, 0).data().toString(), QString("Music"));
        QVERIFY(store->isVisible());
        QVERIFY(!sidebar()->selectionModel()->hasSelection());
        QCOMPARE(row(SidebarView::AllApps, 1).data(SidebarView::CategoryRole).toInt(), 9);
        QCOMPARE(row(SidebarView::AllApps, 1).data(SidebarView::IconNameRole).toString(),
                 QString("cxb_category_9"));
        choose(row(SidebarView::AllApps, 1));
        QTRY_COMPARE(store->catelogWidget()->grid()->appCount(), 3);
        // Fetched again: the same rows, and the chosen one stays.
        Q_EMIT store->catelogWidget()->grid()->retry();
        QTRY_COMPARE(requests("categories"), 2);
        QTRY_COMPARE(requests(apps(9, 1)), 2);
        QTRY_COMPARE(shownPage(store->catelogWidget()->grid()), int(StoreAppGridScrollView::Grid));
        QCOMPARE(store->catelogWidget()->grid()->appCount(), 3);
        QCOMPARE(sidebar()->model()->rowCount(sidebar()->model()->index(SidebarView::AllApps, 0)), 2);
        QCOMPARE(sidebar()->currentIndex(), row(SidebarView::AllApps, 1));
        choose(sidebar()->model()->index(SidebarView::AllApps, 0));
        QVERIFY(!sidebar()->isExpanded(sidebar()->model()->index(SidebarView::AllApps, 0)));
        QVERIFY(store->isVisible());
        choose(row(SidebarView::MyApps, 0));
        QVERIFY(m_window->indexView()->localView()->isVisible());
    }

    void searchFieldSearchesTheShownPage() {
        answer(search("ab"), someApps(1, 2));
        auto* edit = m_window->findChild<Fenk::SearchEdit*>();
        edit->setText("library");
        choose(row(SidebarView::AllApps, 0));
        QCOMPARE(edit->text(), QString());
        AppStoreView* store = m_window->indexView()->storeView();
        QTRY_COMPARE(store->catelogWidget()->grid()->appCount(), 20);
        store->focusApps();
        press(Qt::Key_A);  // letters go to the field
        press(Qt::Key_B);
        QCOMPARE(edit->text(), QString("ab"));
        QTRY_COMPARE(store->currentWidget(), store->searchWidget());
        QTRY_COMPARE(store->searchWidget()->appCount(), 2);
        QVERIFY(edit->hasFocus());
        press(Qt::Key_Down);
        QTRY_COMPARE(QApplication::focusWidget(), card(store->searchWidget(), 0));
        choose(row(SidebarView::AllApps, 0));
        QCOMPARE(store->currentWidget(), store->catelogWidget());
        QCOMPARE(edit->text(), QString());
        QVERIFY(m_server->requests.filter("library").isEmpty());
    }

private:
    std::unique_ptr<Mainwindow> m_window;
};

int main(int argc, char** argv) {
    return runStoreTest<StoreWindowTest>(argc, argv);
}
#include "StoreWindowTest.moc"
