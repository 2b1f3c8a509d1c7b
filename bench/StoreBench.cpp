// The store's page with 100, 1 000 and 10 000 applications: from the showing of the page to the first picture
// of a card, what the arrival of one more page of 20 takes, frames while scrolling by a row and by leaps,
// from the end of the pause after a keystroke to the first card that was found, and the memory of an
// application. Prints a table and how the cost grows with the number. Limits: no frame above 16 ms, 5 ms in
// the middle. The argument is the largest number of applications; with 100 it only shows that all of it
// works.
//
//     QT_QPA_PLATFORM=offscreen build/<preset>/bench/StoreBench [10000]
#include <unistd.h>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QPainter>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "WindowTimes.h"
#include "core/base/SettingsStore.h"
#include "fenk/window/Application.h"
#include "store/view/AppStoreCatelogWidget.h"
#include "store/view/AppStoreItemListView.h"
#include "store/view/AppStoreSearchWidget.h"
#include "store/view/AppStoreView.h"
#include "store/view/StoreAppGridScrollView.h"
#include "store/view/StoreAppItemUI.h"
#include "support/HttpServer.h"
#include "support/PrivateBus.h"

namespace {

constexpr int PageSize = 20;
constexpr int Pictures = 50;
constexpr int SearchPauseMs = 600;

/// Of this thread. A machine that is busy with other things does not count.
double processorMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

QJsonObject app(const TestSupport::HttpServer& server, int number) {
    return {{"appId", number},
            {"appInfoId", QString("info%1").arg(number)},
            {"appName", QString("Application of Workshop %1").arg(number)},
            {"iconSaveKey", server.address(QString("icon%1.png").arg(number % Pictures))},
            {"packageVersion", "1.2.3"},
            {"briefInfo", "Draws, paints and lays out whole magazines, with layers and styles"},
            {"score", number % 6},
            {"recommend", number % 2}};
}

QByteArray firstPage(const TestSupport::HttpServer& server) {
    QJsonArray list;
    for (int i = 0; i < PageSize; ++i)
        list.append(app(server, i));
    return QJsonDocument(QJsonObject{{"code", 200}, {"data", QJsonObject{{"list", list}}}}).toJson();
}

void fill(TestSupport::HttpServer* server) {
    for (int i = 0; i < Pictures; ++i) {
        QImage image(128, 128, QImage::Format_ARGB32);
        image.fill(QColor::fromHsv(i * 7, 200, 200));
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        server->files[QString("icon%1.png").arg(i)] = buffer.data();
    }
    server->files["categories"] = R"({"code":200,"data":{"list":[]}})";
    server->files["apps?pageIndex=1&pageSize=20&field=update_time&sort=desc"] = firstPage(*server);
    server->files["search?keyword=o&pageIndex=1&pageSize=20"] = firstPage(*server);
}

/// Of the cards of a page.
std::function<bool(QObject*)> cardOf(const QWidget* page) {
    return [page](QObject* object) {
        const auto* card = qobject_cast<StoreAppItemUI*>(object);
        return card && page->isAncestorOf(card);
    };
}

struct Frames {
    double middle;
    double worst;
};

Frames framesOf(QVector<double> times) {
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times.last()};
}

/// Each frame moves the list by `step` pixels, and from its end to its start.
Frames scroll(AppStoreItemListView* list, int step) {
    QScrollBar* bar = list->verticalScrollBar();
    const QSignalBlocker blocker(list);  // nothing is asked for at the end
    QVector<double> times;
    for (int frame = 0; frame < 200; ++frame) {
        const double start = processorMs();
        bar->setValue(bar->value() >= bar->maximum() - step ? 0 : bar->value() + step);
        list->repaint();
        times.append(processorMs() - start);
        settle(4);
    }
    return framesOf(times);
}

struct Result {
    double paint = 0;
    Frames append{};
    Frames rows{};
    Frames leaps{};
    double search = 0;
    double kibPerApp = 0;
};

Result measure(int count) {
    Result result;
    TestSupport::HttpServer server;
    fill(&server);
    settingsStore()->setOption("client.base_url.", server.address({}).chopped(1));
    AppStoreView view;
    view.resize(750, 620);
    QElapsedTimer timer;
    {
        const FirstPaint first(cardOf(view.catelogWidget()));
        timer.start();
        view.show();
        first.wait();
        result.paint = milliseconds(timer);
    }
    settle(500);
    const double before = residentKiB();
    StoreAppGridScrollView* grid = view.catelogWidget()->grid();
    QVector<double> appends;
    for (int number = PageSize; number < count; number += PageSize) {
        QList<OpenAPI::VeskClientAppInfo> apps;
        for (int i = 0; i < PageSize; ++i) {
            OpenAPI::VeskClientAppInfo record;
            record.fromJsonObject(app(server, number + i));
            apps.append(record);
        }
        const double start = processorMs();
        grid->appendApps(AppStoreViewUtils::toModelData(apps));
        view.repaint();
        appends.append(processorMs() - start);
        QCoreApplication::processEvents();
    }
    settle(2000);
    result.append = framesOf(appends);
    result.kibPerApp = (residentKiB() - before) / count;
    result.rows = scroll(grid->list(), 104);
    result.leaps = scroll(grid->list(), 5003);
    const FirstPaint found(cardOf(view.searchWidget()));
    timer.restart();
    view.onSearchTextChanged("o");
    found.wait();
    result.search = milliseconds(timer) - SearchPauseMs;
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(name, QFile::encodeName(home.path()));
    Fenk::Application application(argc, argv);
    const int most = argc > 1 ? std::atoi(argv[1]) : 10000;
    QLoggingCategory::setFilterRules("*.info=false\n*.debug=false\n*.warning=false");
    if (most > 100)
        measure(100);  // what is loaded once for all
    std::printf("%8s %10s %16s %16s %16s %10s %8s\n", "apps", "picture ms", "append ms", "row ms", "leap ms",
                "search ms", "KiB/app");
    Result last;
    int lastCount = 0;
    for (const int count : {100, 1000, 10000}) {
        if (count > most)
            break;
        const Result now = measure(count);
        std::printf("%8d %10.1f %7.1f /%7.1f %7.1f /%7.1f %7.1f /%7.1f %10.1f %8.2f", count, now.paint,
                    now.append.middle, now.append.worst, now.rows.middle, now.rows.worst, now.leaps.middle,
                    now.leaps.worst, now.search, now.kibPerApp);
        if (lastCount)
            std::printf("   x%d apps: picture x%.1f, append x%.1f, row x%.1f, leap x%.1f, search x%.1f",
                        count / lastCount, now.paint / last.paint, now.append.middle / last.append.middle,
                        now.rows.middle / last.rows.middle, now.leaps.middle / last.leaps.middle,
                        now.search / last.search);
        std::printf("\n");
        std::fflush(stdout);
        last = now;
        lastCount = count;
    }
    std::printf("(in the middle / at worst)\n");
    return 0;
}
