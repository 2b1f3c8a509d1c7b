#include "storeserver/Options.h"

#include <QCommandLineParser>
#include <algorithm>
#include <thread>

namespace StoreServer {

namespace {

constexpr int MaximumThreads = 64;
constexpr int StandardThreads = 4;
constexpr int MaximumIdleSeconds = 7 * 24 * 60 * 60;
constexpr int MaximumPort = 65535;
constexpr int MaximumReportsMiB = 1024 * 1024;
const char StandardListen[] = "127.0.0.1:8630";
const char StandardIdleSeconds[] = "300";
const char StandardReportsMiB[] = "1024";

int standardThreads() {
    return std::clamp(int(std::thread::hardware_concurrency()), 1, StandardThreads);
}

bool readListen(const QString& text, Options& options) {
    const int colon = text.lastIndexOf(':');
    QString host = text.left(colon);
    if (host.startsWith('[') && host.endsWith(']'))
        host = host.mid(1, host.size() - 2);
    bool isNumber = false;
    options.port = text.mid(colon + 1).toInt(&isNumber);
    options.host = host.toStdString();
    return colon > 0 && !host.isEmpty() && isNumber && options.port >= 0 && options.port <= MaximumPort;
}

}  // namespace

Options parseOptions(const QStringList& arguments, const QString& starterData) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Serves a store of applications from a directory, and takes reports about them. Of the store it "
        "keeps no "
        "state.");
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption data("data", "The store's directory instead of the installed one.", "directory",
                                  starterData);
    const QCommandLineOption listen("listen", "Where to listen, such as 0.0.0.0:8630 or [::1]:8630.",
                                    "address:port", StandardListen);
    const QCommandLineOption publicUrl("public-url",
                                       "Where clients reach the store, such as https://store.example/path. "
                                       "Without it the address of icons comes from each request's Host.",
                                       "url");
    const QCommandLineOption threads("threads", "How many threads answer requests.", "number",
                                     QString::number(standardThreads()));
    const QCommandLineOption check("check", "Only check the directory; end with 1 if it has faults.");
    const QCommandLineOption session("session",
                                     "Serve the user of this session, who asks for the address on the "
                                     "session bus, and end when idle.");
    const QCommandLineOption idle("idle-seconds",
                                  "With --session: end after this time without use; 0 is never.", "seconds",
                                  StandardIdleSeconds);
    const QCommandLineOption reports("reports", "Take reports of users and keep them in this directory.",
                                     "directory");
    const QCommandLineOption room("reports-room", "How much may be in it.", "MiB", StandardReportsMiB);
    const QCommandLineOption list("list-reports",
                                  "Only print what is in a directory of reports, which follows.");
    parser.addOptions({data, listen, publicUrl, threads, check, session, idle, reports, room, list});

    Options options;
    if (!parser.parse(arguments)) {
        options.error = parser.errorText();
        return options;
    }
    options.helpText = parser.helpText();
    if (parser.isSet(help) || parser.isSet(version)) {
        options.task = parser.isSet(help) ? Options::Task::Help : Options::Task::Version;
        return options;
    }
    options.data = parser.value(data);
    options.reports = parser.value(reports);
    QStringList others = parser.positionalArguments();
    if (parser.isSet(list) && options.reports.isEmpty() && !others.isEmpty())
        options.reports = others.takeFirst();
    options.task = parser.isSet(check)     ? Options::Task::Check
                   : parser.isSet(list)    ? Options::Task::ListReports
                   : parser.isSet(session) ? Options::Task::ServeSession
                                           : Options::Task::Serve;
    bool areThreads = false;
    bool areSeconds = false;
    bool areMiB = false;
    options.reportsMiB = parser.value(room).toInt(&areMiB);
    options.threads = parser.value(threads).toInt(&areThreads);
    options.idleSeconds = parser.value(idle).toInt(&areSeconds);
    if (!others.isEmpty())
        options.error = "Unexpected argument: " + others.constFirst();
    else if (!areThreads || options.threads < 1 || options.threads > MaximumThreads)
        options.error = QString("--threads must be a number from 1 to %1.").arg(MaximumThreads);
    else if (!areSeconds || options.idleSeconds < 0 || options.idleSeconds > MaximumIdleSeconds)
        options.error = QString("--idle-seconds must be a number from 0 to %1.").arg(MaximumIdleSeconds);
    else if (!areMiB || options.reportsMiB < 1 || options.reportsMiB > MaximumReportsMiB)
        options.error = QString("--reports-room must be a number from 1 to %1.").arg(MaximumReportsMiB);
    else if (options.reports.isEmpty() && parser.isSet(list))
        options.error = "--list-reports needs a directory: --list-reports DIRECTORY.";
    else if (options.reports.isEmpty() && (parser.isSet(reports) || parser.isSet(room)))
        options.error = "--reports-room needs a directory in --reports, and that must have a name.";
    else if (parser.isSet(session) && parser.isSet(reports))
        options.error = "--reports cannot be used with --session, which serves this user only.";
    else if (parser.isSet(session) && (parser.isSet(listen) || parser.isSet(publicUrl)))
        options.error =
            "--listen and --public-url cannot be used with --session, which serves this user only.";
    else if (!readListen(parser.value(listen), options))
        options.error = QString("--listen must be an address and a port, such as %1.").arg(StandardListen);
    else if (parser.isSet(publicUrl) && !options.publicAddress.set(parser.value(publicUrl).toStdString()))
        options.error = "--public-url must be a plain http or https address without a slash at its end.";
    return options;
}

}  // namespace StoreServer
