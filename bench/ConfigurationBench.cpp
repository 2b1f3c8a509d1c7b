// The configuration window of a bottle with 1 and with 200 programs: from its construction to the first
// picture, and until the bottle's settings and programs are shown. Against a baseline in the same run: a bare
// dialog until it is painted, and the service's answer alone. Limits: 100 ms and 300 ms. The argument is the
// largest number of programs; with 1 it only shows that all of it works.
//
//     QT_QPA_PLATFORM=offscreen build/<preset>/bench/ConfigurationBench [200]
#include <QElapsedTimer>
#include <QEvent>
#include <QJsonArray>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "WindowTimes.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentManager.h"
#include "fenk/window/AbstractDialog.h"
#include "fenk/window/Application.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"

namespace {

const char Bottle[] = "office";

struct Times {
    double paint = 1e9;
    double filled = 1e9;
};

QJsonObject record(int count, const QString& path) {
    QJsonObject programs;
    for (int i = 0; i < count; ++i) {
        const QString id = QString("00000000-0000-4000-8000-%1").arg(i, 12, 10, QChar('0'));
        programs.insert(id, QJsonObject{{"id", id},
                                        {"name", QString("Program of Workshop %1").arg(i)},
                                        {"path", QString("C:\\Workshop %1\\program.exe").arg(i)},
                                        {"icon", QString("/nonexistent/icon%1.png").arg(i)}});
    }
    return {{"Path", path},
            {"Runner", "lumora-wine10-stable"},
            {"Windows", "win10"},
            {"Parameters", QJsonObject{{"custom_dpi", 96}, {"renderer", "gl"}}},
            {"External_Programs", programs}};
}

Times open(int count) {
    Times times;
    const FirstPaint first(&isA<Fenk::AbstractDialog>);
    QElapsedTimer timer;
    timer.start();
    auto view = std::make_unique<BottlesConfigView>();
    view->setAttribute(Qt::WA_DeleteOnClose, false);
    bool isLoaded = false;
    QObject::connect(view.get(), &BottlesConfigView::bottlesLoaded, view.get(), [&] { isLoaded = true; });
    view->loadBottle(Bottle);
    view->show();
    first.wait();
    times.paint = milliseconds(timer);
    waitFor([&] { return isLoaded && view->findChildren<AppEntryButton*>().size() == count; });
    view->repaint();
    times.filled = milliseconds(timer);
    return times;
}

/// What no window can do without.
Times baseline() {
    Times times;
    const FirstPaint first(&isA<Fenk::AbstractDialog>);
    QElapsedTimer timer;
    timer.start();
    Fenk::AbstractDialog dialog;
    dialog.setFixedSize(960, 700);
    dialog.show();
    first.wait();
    times.paint = milliseconds(timer);
    bool isAnswered = false;
    BottlesConfig::instance()->watchBottle(Bottle, &dialog, [&](const BusResult&) { isAnswered = true; });
    waitFor([&] { return isAnswered; });
    times.filled = milliseconds(timer);
    return times;
}

Times best(int runs, const std::function<Times()>& measure) {
    Times least;
    for (int run = 0; run < runs; ++run) {
        const Times now = measure();
        least.paint = std::min(least.paint, now.paint);
        least.filled = std::min(least.filled, now.filled);
    }
    return least;
}

}  // namespace

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(name, QFile::encodeName(home.path()));
    Fenk::Application application(argc, argv);
    QLoggingCategory::setFilterRules("*.info=false\n*.debug=false\n*.warning=false");
    const int most = argc > 1 ? std::atoi(argv[1]) : 200;
    const int runs = most > 1 ? 7 : 1;
    std::printf("%8s %10s %12s %22s\n", "programs", "paint ms", "filled ms", "of a bare dialog");
    for (const int count : {1, 200}) {
        if (count > most)
            break;
        TestSupport::FakeBottleService service;
        if (!service.start())
            qFatal("no stand-in service");
        service.setBottle(Bottle, record(count, home.path()));
        const Times first = open(count);  // with what is loaded once for all
        const Times bare = best(runs, baseline);
        const Times now = best(runs, [count] { return open(count); });
        std::printf("%8d %10.1f %12.1f      paint x%.1f filled x%.1f   first time %.1f and %.1f\n", count,
                    now.paint, now.filled, now.paint / bare.paint, now.filled / bare.filled, first.paint,
                    first.filled);
        std::fflush(stdout);
    }
    return 0;
}
