// Reading a log of 10 MiB beside `grep -acE` of the rules' expressions on the same file, and the growth from
// 1 MiB to 10 MiB where every line is another one. Prints a table; each time is the best of five.
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
    QByteArray real;
    const QDir corpus(application.arguments().value(1, "tests/data/winelog"));
    for (const QString& name : corpus.entryList(QDir::Files)) {
        QFile file(corpus.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            real += file.readAll();
    }
    QTemporaryDir dir;
    const auto fixme = [](int number) {
        return QString(
                   "0024:0028:fixme:ntdll:NtQuerySystemInformation info_class %1 not supported in this build "
                   "of it\n")
            .arg(number)
            .toUtf8();
    };
    const QString log = write(dir.filePath("real"), 10 * Mebibyte, [&](int) { return real; });
    const QString large = write(dir.filePath("large"), 10 * Mebibyte, fixme);
    const QString small = write(dir.filePath("small"), Mebibyte, fixme);
    const double ours = parse(log), theirs = grep(log), distinct = parse(large), tenth = parse(small);
    std::printf("| what | ours | baseline of the same run | ratio |\n|---|---|---|---|\n");
    std::printf("| 10 MiB of real logs | %.0f ms | grep -acE: %.0f ms | %.2f |\n", ours, theirs,
                ours / theirs);
    std::printf("| 10 MiB of distinct fixme lines | %.0f ms | 1 MiB: %.1f ms | %.1f |\n", distinct, tenth,
                distinct / tenth);
    return 0;
}
