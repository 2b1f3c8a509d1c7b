// Reading a log of 10 MiB beside `grep -acE` of the rules' expressions on the same file, and the growth from
// 1 MiB to 10 MiB where every line is another one. Two logs are made of real lines: one of whole runs of some
// seconds, one of a program that runs for long and now and then has a fault. Prints a table; each time is the
// best of five.
//
//     build/<preset>/bench/WineLogBench tests/data/winelog
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

#include "BestOf.h"
#include "launch/winelog/WineLogParser.h"

namespace {

constexpr int Mebibyte = 1 << 20;
const char Expressions[] =
    "Wine Mono is not "
    "installed|err:setupapi:|err:module:import_dll|windows\\\\\\\\Fonts\\\\\\\\(.*ttf|.*ttc)\" not "
    "found|trace:text:DrawTextExW L\"|wine:\\s+Call\\s+from.*unimplemented\\s+function.*aborting|"
    "trace:process:NtCreateUserProcess .* image L\"(.*)\" cmdline L\"|err:eventlog:ReportEventW";

double parse(const QString& path) {
    return bestOf([&] { WineLogParser().parseFile(path); });
}

double grep(const QString& path) {
    return bestOf([&] {
        QProcess process;
        process.start("grep", {"-acE", Expressions, path});
        process.waitForFinished(-1);
    });
}

QString write(const QString& path, int bytes, const std::function<QByteArray(int)>& part) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write");
    for (int number = 0; file.pos() < bytes; ++number)
        file.write(part(number));
    return path;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    qputenv("LC_ALL", "C.UTF-8");
    QLoggingCategory::setFilterRules("*=false");
    QByteArray real, quiet;
    const QDir corpus(application.arguments().value(1, "tests/data/winelog"));
    for (const QString& name : corpus.entryList(QDir::Files)) {
        QFile file(corpus.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            real += file.readAll();
    }
    for (const QByteArray& line : real.split('\n')) {
        const bool isOrdinary = line.contains("trace:process") || line.contains("warn:file");
        if (isOrdinary && !line.contains("NtCreateUserProcess"))
            quiet += line + '\n';
    }
    const QByteArray calm = quiet.repeated(1 + Mebibyte / std::max(1, quiet.size()));
    QTemporaryDir dir;
    const auto fixme = [](int number) {
        return QString(
                   "0024:0028:fixme:ntdll:NtQuerySystemInformation info_class %1 not supported in this build "
                   "of it\n")
            .arg(number)
            .toUtf8();
    };
    const QString log = write(dir.filePath("real"), 10 * Mebibyte, [&](int) { return real; });
    const QString longRun =
        write(dir.filePath("long"), 10 * Mebibyte, [&](int part) { return part % 2 ? real : calm; });
    const QString large = write(dir.filePath("large"), 10 * Mebibyte, fixme);
    const QString small = write(dir.filePath("small"), Mebibyte, fixme);
    std::printf("| what | ours | baseline of the same run | ratio |\n|---|---|---|---|\n");
    for (const auto& [what, path] : {std::pair{"real logs, one after the other", log},
                                     std::pair{"one long run of a program", longRun}}) {
        const double ours = parse(path), theirs = grep(path);
        std::printf("| 10 MiB of %s | %.0f ms | grep -acE: %.0f ms | %.2f |\n", what, ours, theirs,
                    ours / theirs);
    }
    const double distinct = parse(large), tenth = parse(small);
    std::printf("| 10 MiB of distinct fixme lines | %.0f ms | 1 MiB: %.1f ms | %.1f |\n", distinct, tenth,
                distinct / tenth);
    return 0;
}
