// The page of components with 100, 1 000 and 4 000 of them: making it, one keystroke in its search and one
// step of scrolling, each until its picture stands. The baseline is a plain list of the same texts with the
// same filter and Qt's own delegate in the same run; the page also draws a second line, a size and a status.
// Limits at 1 000: 16 ms for a keystroke and for a step. The argument is the largest number; with 100 it only
// shows that all of it works.
//
//     QT_QPA_PLATFORM=offscreen build/<preset>/bench/ComponentsBench [4000]
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QListView>
#include <QLoggingCategory>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "BestOf.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/window/Application.h"
#include "shell/configuration/components/ComponentsListView.h"
#include "shell/configuration/components/ComponentsPage.h"
#include "support/PrivateBus.h"

namespace {

constexpr int Width = 680;
constexpr int Height = 480;
const char* const Keys[] = {"r", "ru", "run", "runt", "dll99", ""};

QString nameOf(int i) {
    return QString("component%1").arg(i, 4, 10, QChar('0'));
}

void writeCatalogue(const QString& data, int count) {
    QJsonObject entries;
    for (int i = 0; i < count; ++i)
        entries.insert(nameOf(i), QJsonObject{{"Description", QString("Runtime number %1 of a maker").arg(i)},
                                              {"dlls", QJsonArray{QString("dll%1").arg(i), "common"}}});
    QDir().mkpath(data);
    QFile file(data + "/dependency.json");
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(entries).toJson()) < 0)
        qFatal("no catalogue");
}

struct Costs {
    double make = 0;
    double keystroke = 0;
    double scroll = 0;
};

/// Of all keystrokes, and of all steps, the worst; of each the best of some runs.
template <class Filter>
void measureUse(QAbstractItemView* view, QWidget* window, const Filter& filter, Costs* costs) {
    for (const char* key : Keys) {
        costs->keystroke = std::max(costs->keystroke, bestOf([&] {
                                        filter(QString("no match"));
                                        filter(QString(key));
                                        window->grab();
                                    }));
    }
    QScrollBar* bar = view->verticalScrollBar();
    for (int step = 0; step < 8; ++step) {
        costs->scroll = std::max(costs->scroll, bestOf([&] {
                                     bar->setValue(bar->maximum() * step / 8);
                                     view->grab();
                                 }));
    }
}

Costs ofPage() {
    Costs costs;
    std::unique_ptr<ComponentsPage> page;
    costs.make = bestOf([&] {
        page = std::make_unique<ComponentsPage>();
        page->resize(Width, Height);
        page->grab();
    });
    auto* edit = page->findChild<Fenk::SearchEdit*>();
    measureUse(
        page->list(), page.get(), [edit](const QString& text) { edit->setText(text); }, &costs);
    return costs;
}

Costs ofPlainList(int count) {
    Costs costs;
    std::unique_ptr<QListView> list;
    costs.make = bestOf([&] {
        list = std::make_unique<QListView>();
        auto* items = new QStandardItemModel(list.get());
        for (int i = 0; i < count; ++i)
            items->appendRow(new QStandardItem(
                QString("%1 Runtime number %2 of a maker dll%2 common").arg(nameOf(i)).arg(i)));
        auto* proxy = new QSortFilterProxyModel(list.get());
        proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
        proxy->setSourceModel(items);
        proxy->sort(0);
        list->setUniformItemSizes(true);
        list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        list->setModel(proxy);
        list->resize(Width, Height);
        list->grab();
    });
    auto* proxy = static_cast<QSortFilterProxyModel*>(list->model());
    measureUse(
        list.get(), list.get(), [proxy](const QString& text) { proxy->setFilterFixedString(text); }, &costs);
    return costs;
}

}  // namespace

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(name, QFile::encodeName(home.path()));
    Fenk::Application application(argc, argv);
    const int most = argc > 1 ? std::atoi(argv[1]) : 4000;
    QLoggingCategory::setFilterRules("*.info=false\n*.debug=false\n*.warning=false");
    std::printf("%-12s %10s %14s %10s\n", "components", "make ms", "keystroke ms", "scroll ms");
    for (const int count : {100, 1000, 4000}) {
        if (count > most)
            break;
        writeCatalogue(home.path() + "/lumora-wine-bottles", count);
        const Costs page = ofPage(), plain = ofPlainList(count);
        std::printf(
            "%-12d %10.1f %14.1f %10.1f   to a plain list: make x%.1f, keystroke x%.1f, scroll x%.1f\n",
            count, page.make, page.keystroke, page.scroll, page.make / plain.make,
            page.keystroke / plain.keystroke, page.scroll / plain.scroll);
        std::fflush(stdout);
    }
    return 0;
}
