#include "bottleservice/wine/Processes.h"

#include <unistd.h>
#include <csignal>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 MaximumBytes = 1024 * 1024;

QByteArray readBounded(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(MaximumBytes) : QByteArray();
}

QByteArray linkBaseName(const QString& path) {
    char target[4096];
    const ssize_t length = readlink(QFile::encodeName(path).constData(), target, sizeof target);
    QByteArray name(target, int(qMax<ssize_t>(length, 0)));
    name = name.mid(name.lastIndexOf('/') + 1);
    const QByteArray deleted(" (deleted)");
    return name.endsWith(deleted) ? name.left(name.size() - deleted.size()) : name;
}

/// When the first thread of a process has ended, only its other threads have its data.
QString livingThread(const QString& process) {
    const QStringList threads = QDir(process + "/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads) {
        const QString directory = process + "/task/" + thread;
        if (!linkBaseName(directory + "/exe").isEmpty())
            return directory;
    }
    return process;
}

QString normalized(const QString& path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(path) : canonical;
}

}  // namespace

std::vector<Processes::Entry> Processes::all(Kind kind) const {
    std::vector<Entry> entries;
    const QStringList names = QDir(m_procDir).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QString& name : names) {
        bool isPid = false;
        Entry entry;
        entry.pid = name.toInt(&isPid);
        if (!isPid || entry.pid <= 1)
            continue;
        QString directory = m_procDir + '/' + name;
        entry.executable = linkBaseName(directory + "/exe");
        if (entry.executable.isEmpty()) {
            directory = livingThread(directory);
            entry.executable = linkBaseName(directory + "/exe");
        }
        if (entry.executable.isEmpty() || (kind == Kind::Wine && !isWineExecutable(entry.executable)))
            continue;
        const QHash<QByteArray, QByteArray> environment =
            parseEnvironment(readBounded(directory + "/environ"));
        entry.prefix = environment.value("WINEPREFIX");
        entry.program = environment.value("_CXB_WINE_PROGRAM_UUID");
        entry.file = environment.value("_CXB_WINE_PROGRAM_FILE");
        entry.commandLine = readBounded(directory + "/cmdline");
        if (!entry.prefix.isEmpty())
            entries.push_back(entry);
    }
    return entries;
}

std::vector<Processes::Entry> Processes::ofBottle(const QString& bottlePath, Kind kind) const {
    const QString wanted = normalized(bottlePath);
    std::vector<Entry> entries;
    for (const Entry& entry : all(kind)) {
        if (normalized(QFile::decodeName(entry.prefix)) == wanted)
            entries.push_back(entry);
    }
    return entries;
}

std::vector<Processes::Entry> Processes::ofProgram(const QString& bottlePath,
                                                   const QString& programId) const {
    std::vector<Entry> entries;
    for (const Entry& entry : ofBottle(bottlePath)) {
        if (entry.program == programId.toUtf8() && !servesWholeBottle(entry))
            entries.push_back(entry);
    }
    return entries;
}

QHash<QByteArray, QByteArray> Processes::parseEnvironment(const QByteArray& block) {
    QHash<QByteArray, QByteArray> variables;
    for (const QByteArray& item : block.split('\0')) {
        const int equals = item.indexOf('=');
        // Of two equal names the first one counts, as for getenv.
        if (equals > 0 && !variables.contains(item.left(equals)))
            variables.insert(item.left(equals), item.mid(equals + 1));
    }
    return variables;
}

bool Processes::isWineExecutable(const QByteArray& baseName) {
    return baseName.startsWith("wine") || baseName == "box64" || baseName == "box86";
}

bool Processes::servesWholeBottle(const Entry& entry) {
    if (entry.executable.startsWith("wineserver"))
        return true;
    const QList<QByteArray> arguments = entry.commandLine.split('\0');
    // The preloader puts the loader's path in front of the Windows path.
    for (const QByteArray& argument : arguments.mid(0, 2)) {
        const QByteArray name =
            argument.mid(qMax(argument.lastIndexOf('\\'), argument.lastIndexOf('/')) + 1).toLower();
        if (name == "services.exe" || name == "winedevice.exe" || name == "plugplay.exe" ||
            name == "svchost.exe" || name == "rpcss.exe" || name == "wineserver")
            return true;
        if (name == "explorer.exe" && arguments.contains("/desktop"))
            return true;
    }
    return false;
}

void Processes::signal(const std::vector<Entry>& entries, int number) {
    for (const Entry& entry : entries) {
        if (entry.pid != getpid())
            kill(entry.pid, number);
    }
}
