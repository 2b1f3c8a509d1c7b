// Looking into files before a launch: the key of a file of 1 GiB, the scanner on 5 MiB, the whole check of 50
// MiB, each beside the machine's `file` command on the same file. The best of five.
//
//     build/<preset>/bench/InspectionBench
#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>
#include <vector>

#include "BestOf.h"
#include "core/base/Paths.h"
#include "launch/bottle/PrivateBottleName.h"
#include "launch/inspection/ExeFileChecker.h"

namespace {

constexpr qint64 Mebibyte = 1 << 20;

double tool(const QString& program, const QStringList& arguments) {
    return bestOf([&] {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished(-1);
    });
}

/// A real program with noise behind it, sparse beyond 64 MiB.
QString grown(const QString& path, qint64 size, const QString& program) {
    QFile::copy(program, path);
    QFile file(path);
    if (!file.open(QIODevice::Append))
        qFatal("cannot write %s", qPrintable(path));
    QRandomGenerator random(1);
    std::vector<quint32> noise(size_t(std::min(size, 64 * Mebibyte) / 4));
    random.fillRange(noise.data(), qsizetype(noise.size()));
    file.write(reinterpret_cast<const char*>(noise.data()), qint64(noise.size() * 4));
    file.resize(size);
    return path;
}

void print(const char* what, double ours, double theirs) {
    std::printf("| %s | %.0f ms | file --brief: %.0f ms | %.1f |\n", what, ours, theirs, ours / theirs);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules("*=false");
    QTemporaryDir dir;
    const QString program = SAMPLE_PROGRAM;
    const QString small = grown(dir.filePath("small.exe"), 5 * Mebibyte, program);
    const QString medium = grown(dir.filePath("medium.exe"), 50 * Mebibyte, program);
    const QString large = grown(dir.filePath("large.exe"), 1024 * Mebibyte, program);
    std::printf("| what | ours | baseline of the same run | ratio |\n|---|---|---|---|\n");
    print("key of 1 GiB", bestOf([&] { partialFileMd5(large); }), tool("file", {"--brief", large}));
    print("scanner on 5 MiB", tool(Paths::diecTool(), {"--json", small}), tool("file", {"--brief", small}));
    print("whole check of 50 MiB", bestOf([&] { ExeFileChecker(medium).info(); }),
          tool("file", {"--brief", medium}));
    return 0;
}
