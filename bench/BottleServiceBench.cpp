// Round trips of `get` on the session bus, with one, two hundred and two thousand bottles on disk, beside the
// same round trip to the bus itself; p50 and p99 are in microseconds. Run it in a session of its own:
//
//     scripts/session --private build/<preset>/bench/BottleServiceBench
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <algorithm>
#include <vector>

namespace {

QString bottlesDir() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           "/lumora-wine-bottles/bottles";
}

/// What the service needs to know a bottle, without a prefix behind it.
void makeBottles(int count) {
    QDir(bottlesDir()).removeRecursively();
    for (int i = 0; i < count; ++i) {
        const QString path = QString("%1/bottle%2").arg(bottlesDir()).arg(i);
        QDir().mkpath(path + "/drive_c");
        QFile file(path + "/bottle.yml");
        if (file.open(QIODevice::WriteOnly))
            file.write(
                "Runner: lumora-wine10-stable\nWindows: win10\nParameters: {}\nExternal_Programs: {}\n"
                "Installed_Dependencies: []\n");
    }
}

void call(benchmark::State& state, const QDBusMessage& message) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    std::vector<double> times;
    for (auto _ : state) {
        QElapsedTimer elapsed;
        elapsed.start();
        const QDBusMessage reply = bus.call(message);
        times.push_back(double(elapsed.nsecsElapsed()) / 1000);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            state.SkipWithError(qPrintable(reply.errorMessage()));
            return;
        }
    }
    std::sort(times.begin(), times.end());
    state.counters["p50"] = times[times.size() / 2];
    state.counters["p99"] = times[times.size() * 99 / 100];
}

void busItself(benchmark::State& state) {
    call(state, QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId"));
}
BENCHMARK(busItself);

QDBusMessage bottlesCall(const QString& method) {
    return QDBusMessage::createMethodCall("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Bottles",
                                          "com.lumora.Manager.Bottles", method);
}

void get(benchmark::State& state) {
    makeBottles(int(state.range(0)));
    QDBusMessage message = bottlesCall("get");
    message << QString("bottle0");
    call(state, message);
}
BENCHMARK(get)->Arg(1)->Arg(200)->Arg(2000);

void listAllPrograms(benchmark::State& state) {
    makeBottles(int(state.range(0)));
    call(state, bottlesCall("listAllPrograms"));
}
BENCHMARK(listAllPrograms)->Arg(1)->Arg(200)->Arg(2000);

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
