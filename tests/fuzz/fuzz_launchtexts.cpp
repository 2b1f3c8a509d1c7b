// What a launch reads: Wine's log, the monitor's lines, packages' relations. The first byte chooses which.
#include <QLoggingCategory>
#include <QTemporaryFile>
#include <QTextStream>
#include <cstdlib>

#include "launch/monitor/MonitorCycle.h"
#include "launch/monitor/MonitorProtocol.h"
#include "launch/repair/Diagnosis.h"
#include "launch/repair/FailureFacts.h"
#include "launch/winelog/WineLogParser.h"
#include "probes/Packages.h"

namespace {

constexpr int LongestReason = 400;

/// The quick way through a file must find what the plain one finds.
void parseLog(const QByteArray& log) {
    // Bytes that are no text are read alike only where the encoding keeps lines apart.
    const QByteArray text = QString::fromUtf8(log).toUtf8();
    if (text.startsWith("\xef\xbb\xbf") || text.startsWith("\xff\xfe") || text.startsWith("\xfe\xff"))
        return;
    QTemporaryFile file;
    if (!file.open() || file.write(text) != text.size() || !file.flush())
        return;
    WineLogParser quick, plain;
    QTextStream stream(text);
    stream.setCodec("UTF-8");
    const int expected = plain.parseStream(stream);
    if (quick.parseFile(file.fileName()) != expected || quick.otherLogs != plain.otherLogs ||
        quick.parsedLogs != plain.parsedLogs || quick.drawnTexts != plain.drawnTexts)
        std::abort();
    FailureFacts facts;
    facts.addLog(quick, expected);
    const QString reason = Diagnosis::of(facts).reason;
    if (reason.isEmpty() || reason.size() > LongestReason || reason.contains('\n'))
        std::abort();
}

void watch(const QByteArray& output) {
    MonitorProtocol protocol;
    MonitorCycle cycle;
    for (const QByteArray& line : output.split('\n')) {
        if (protocol.read(QString::fromUtf8(line)) &&
            cycle.step(protocol.processList, protocol.windowList, [] {}))
            return;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool quiet = (QLoggingCategory::setFilterRules("*=false"), qputenv("LC_ALL", "C.UTF-8"));
    if (!quiet || size == 0)
        return 0;
    const QByteArray text(reinterpret_cast<const char*>(data) + 1, int(size) - 1);
    if (data[0] % 3 == 1) {
        parseLog(text);
    } else if (data[0] % 3 == 0) {
        watch(text);
    } else {
        const PackageQueries queries{
            [](const QString& name, QString* version) { return *version = "1", name.size() % 2; },
            [](const QString& one, const QString&, const QString& two) { return one < two; }};
        unmetDependencies(QString::fromUtf8(text), queries);
        parseInstalledPackages(QString::fromUtf8(text));
        parsePackageVersion(QString::fromUtf8(text));
    }
    return 0;
}
