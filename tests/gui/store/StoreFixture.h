#pragma once

#include <QAccessible>
#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScrollBar>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "core/base/SettingsStore.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "store/view/AppStoreCatelogWidget.h"
#include "store/view/AppStoreItemListView.h"
#include "store/view/AppStoreItemModel.h"
#include "store/view/AppStoreSearchWidget.h"
#include "store/view/AppStoreView.h"
#include "store/view/StoreAppGridScrollView.h"
#include "store/view/StoreAppItemUI.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

/// A store on this machine and a fake bottle service.
class StoreFixture : public QObject {
    Q_OBJECT
protected:
    static QString apps(int category, int page, const QString& field = "update_time") {
        return (category ? QString("apps?category=%1&").arg(category) : QString("apps?")) +
               QString("pageIndex=%1&pageSize=20&field=%2&sort=desc").arg(page).arg(field);
    }
    static QString search(const QString& keyword, int page = 1) {
        return QString("search?keyword=%1&pageIndex=%2&pageSize=20").arg(keyword).arg(page);
    }
    QJsonObject app(int id) const {
        return {{"appId", id},
                {"appInfoId", QString("info%1").arg(id)},
                {"appName", QString("App %1").arg(id)},
                {"iconSaveKey", m_server->address(QString("icons/%1.png").arg(id % 3))},
                {"packageVersion", "1.0"},
                {"briefInfo", "What it does"},
                {"score", id % 6},
                {"recommend", id % 2}};
    }
    QJsonArray someApps(int first, int count) const {
        QJsonArray list;
        for (int id = first; id < first + count; ++id)
            list.append(app(id));
        return list;
    }
    void answer(const QString& path, const QJsonArray& list, int code = 200) {
        m_server->files[path] =
            QJsonDocument(
                QJsonObject{{"code", code}, {"msg", "broken"}, {"data", QJsonObject{{"list", list}}}})
                .toJson();
    }
    int requests(const QString& path) const {
        return int(m_server->requests.count("vesk/client/" + path + "@0"));
    }
    static int shownPage(const StoreAppGridScrollView* grid) { return grid->currentIndex(); }
    static StoreAppItemUI* card(const StoreAppGridScrollView* grid, int row) {
        return grid->list()->card(grid->list()->appModel()->index(row, 0));
    }
    static void toTheEnd(const StoreAppGridScrollView* grid) {
        QScrollBar* bar = grid->list()->verticalScrollBar();
        bar->setValue(0);
        bar->setValue(bar->maximum());
    }
    void press(int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); }

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<TestSupport::HttpServer> m_server;

protected Q_SLOTS:
    void init() {
        QApplication::setDoubleClickInterval(0);  // the tests click as fast as they can
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
        m_server = std::make_unique<TestSupport::HttpServer>();
        settingsStore()->setOption("client.base_url.", m_server->address({}).chopped(1));
        answer(apps(0, 1), someApps(1, 20));
        answer("categories",
               {QJsonObject{{"id", 3}, {"name", "Music"}}, QJsonObject{{"id", 9}, {"name", "System"}},
                QJsonObject{{"id", "x"}, {"name", "Bad"}}});
    }
    void cleanup() {
        m_service.reset();
        m_server.reset();
    }
};

template <class Test>
int runStoreTest(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
