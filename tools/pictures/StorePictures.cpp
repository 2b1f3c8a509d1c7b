// Pictures of the store with sample data: store-pictures STATE [--theme light|dark] --screenshot FILE
// LANG chooses English or Chinese. Needs a session bus on which the name of the bottle service is free. A new
// state is a line in the table below.
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QPixmap>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>

#include "Pictures.h"
#include "core/base/SettingsStore.h"
#include "fenk/controls/SearchEdit.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ProgramRuns.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/SidebarView.h"
#include "store/view/AppStoreCatelogWidget.h"
#include "store/view/AppStoreItemListView.h"
#include "store/view/AppStoreSearchWidget.h"
#include "store/view/AppStoreView.h"
#include "store/view/StoreAppGridScrollView.h"
#include "support/FakeBottleService.h"
#include "support/HttpServer.h"

using namespace TestSupport;

namespace {

const struct {
    const char* name;
    const char* brief;
    const char* chineseName;
    const char* chineseBrief;
} Samples[] = {
    {"Harbour Office", "Letters, tables and slides", "港湾办公", "文字、表格与演示"},
    {"Quartz Studio 2024", "Draws, paints and lays out whole magazines, with layers and styles",
     "石英工作室 2024", "绘画、排版与图层处理,适合整本杂志的设计与制作"},
    {"Tide Tables", "When the water comes and goes", "潮汐表", "查看每天的潮起潮落"},
    {"The Very Long Name of a Program That Nobody Can Remember", "Does one thing well",
     "名称非常之长以至于没有人能够记住的应用程序", "只做一件事,做得很好"},
    {"Pixel Garden", "Small pictures for small games", "像素花园", "为小游戏绘制小图片"},
    {"Ledger", "Keeps the books of a household", "账本", "家庭记账"},
    {"Blue Lagoon", "Plays nearly every film", "蓝色潟湖", "几乎可以播放所有影片"},
    {"Uplift", "Brings files to a server", "上行", "把文件传到服务器"},
};
const char* const Categories[][2] = {{"Chat", "聊天沟通"},   {"Office", "办公"}, {"Internet", "网络"},
                                     {"Music", "音乐"},      {"Video", "视频"},  {"Graphics", "图形图像"},
                                     {"Reading", "阅读"},    {"Games", "游戏"},  {"Development", "编程开发"},
                                     {"System", "系统工具"}, {"Other", "其他"}};

bool isChinese() {
    return QLocale().language() == QLocale::Chinese;
}

struct Scene {
    Mainwindow* window;

    AppStoreView* view() const { return window->indexView()->storeView(); }
    SidebarView* sidebar() const { return window->indexView()->sidebar(); }
    void choose(int row) const {
        const auto* model = sidebar()->model();
        const QModelIndex index = model->index(row, 0, model->index(SidebarView::AllApps, 0));
        sidebar()->setCurrentIndex(index);
        Q_EMIT sidebar()->clicked(index);
        settle(1200);
    }
    void search(const QString& text) const {
        auto* edit = window->findChild<Fenk::SearchEdit*>();
        edit->setFocus();
        edit->setText(text);
        settle(1500);
    }
};

QByteArray listOf(const HttpServer& server, int count) {
    QJsonArray list;
    for (int i = 0; i < count; ++i) {
        const auto& sample = Samples[i % std::size(Samples)];
        list.append(
            QJsonObject{{"appId", i + 1},
                        {"appInfoId", QString("info%1").arg(i + 1)},
                        {"appName", QString::fromUtf8(isChinese() ? sample.chineseName : sample.name)},
                        {"briefInfo", QString::fromUtf8(isChinese() ? sample.chineseBrief : sample.brief)},
                        {"iconSaveKey", server.address(QString("icon%1.png").arg(i % 9))},
                        {"packageVersion", QString("%1.%2").arg(i % 7 + 1).arg(i % 4)},
                        {"score", i % 6},
                        {"recommend", i % 3 == 1 ? 1 : 0}});
    }
    return QJsonDocument(QJsonObject{{"code", 200}, {"data", QJsonObject{{"list", list}}}}).toJson();
}

void fill(HttpServer* server) {
    for (int i = 0; i < 8; ++i) {  // the ninth is missing
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        sampleIcon(i, QString::fromUtf8(isChinese() ? Samples[i].chineseName : Samples[i].name))
            .save(&buffer, "PNG");
        server->files[QString("icon%1.png").arg(i)] = buffer.data();
    }
    QJsonArray categories;
    for (const auto& category : Categories)
        categories.append(
            QJsonObject{{"id", categories.size() + 1}, {"name", QString::fromUtf8(category[isChinese()])}});
    server->files["categories"] =
        QJsonDocument(QJsonObject{{"code", 200}, {"data", QJsonObject{{"list", categories}}}}).toJson();
    const QString page = "pageIndex=1&pageSize=20&field=update_time&sort=desc";
    server->files["apps?" + page] = listOf(*server, 20);
    server->files["apps?category=4&" + page] = listOf(*server, 5);
    server->files["apps?category=7&" + page] = listOf(*server, 0);
    server->files["search?keyword=o&pageIndex=1&pageSize=20"] = listOf(*server, 3);
    server->files["search?keyword=qqq&pageIndex=1&pageSize=20"] = listOf(*server, 0);
}

void showAll(const Scene& scene) {
    scene.choose(0);
}

const struct {
    const char* name;
    const char* fault;  ///< of the server
    std::function<void(const Scene&)> act;
} States[] = {
    {"all", "", showAll},
    {"states", "",
     [](const Scene& scene) {
         showAll(scene);
         ProgramRuns::instance()->setStarting({"program-3", "c"}, true);
         AppItemWidgetStateManager::instance()->startSetup("2");
         scene.view()->focusApps();
     }},
    {"category", "",
     [](const Scene& scene) {
         showAll(scene);
         scene.choose(3);
     }},
    {"order", "",
     [](const Scene& scene) {
         showAll(scene);
         scene.window->findChild<QComboBox*>("appstore_catelog_sort")->setFocus(Qt::TabFocusReason);
     }},
    {"search", "",
     [](const Scene& scene) {
         showAll(scene);
         scene.search("o");
     }},
    {"nothing", "",
     [](const Scene& scene) {
         showAll(scene);
         scene.search("qqq");
     }},
    {"empty", "",
     [](const Scene& scene) {
         showAll(scene);
         scene.choose(6);
     }},
    {"loading", "silent", showAll},
    {"more", "",
     [](const Scene& scene) {
         showAll(scene);
         auto* list = scene.view()->catelogWidget()->grid()->list();
         const QSignalBlocker blocker(list);  // nothing is asked for
         list->verticalScrollBar()->setValue(list->verticalScrollBar()->maximum());
         list->setBottomLoading(true);
     }},
    {"error", "gone", showAll},
    {"refused", "",
     [](const Scene& scene) {
         showAll(scene);
         auto* list = scene.view()->catelogWidget()->grid()->list();
         list->onAppSetup(list->model()->index(0, 0));
     }},
};

QImage paint(const QString& fault, const std::function<void(const Scene&)>& act) {
    FakeBottleService service;
    if (!service.start())
        return {};
    const auto installed = [&service](int appId, const char* uuid) {
        service.setBottle(
            QString("program-%1").arg(appId),
            {{"Path", "/nonexistent"}, {"External_Programs", QJsonObject{{uuid, QJsonObject()}}}});
    };
    installed(3, "c");
    installed(5, "e");
    HttpServer server;
    fill(&server);
    if (fault == "gone")
        server.files.clear();
    settingsStore()->setOption(
        "client.base_url.",
        server.address(fault == "silent" ? fault : QString()).remove(QRegularExpression("/$")));
    Mainwindow window;
    window.show();
    window.activateWindow();
    const Scene scene{&window};
    QElapsedTimer time;
    time.start();
    while (!scene.view() && time.elapsed() < 10000)
        settle(50);
    if (!scene.view())
        return {};
    act(scene);
    settle(1000);
    QWidget* dialog = QApplication::activeModalWidget();
    return picture(dialog ? QList<QWidget*>{&window, dialog} : QList<QWidget*>{&window});
}

}  // namespace

int main(int argc, char** argv) {
    QVector<PictureState> states;
    for (const auto& state : States)
        states.append({state.name, [&state] { return paint(state.fault, state.act); }});
    return takePicture(argc, argv, states);
}
