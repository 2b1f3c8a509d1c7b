#include "bottleservice/wine/ProgramWatch.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QTimer>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/LaunchRecords.h"

namespace {

/// During an exec a process has no environment.
constexpr int SettleMs = 50;

}  // namespace

ProgramWatch::ProgramWatch(const BottleStore& store, QObject* parent)
    : QObject(parent), m_store(store), m_directory(store.runningDir()) {
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &ProgramWatch::readDirectory);
}

void ProgramWatch::start() {
    if (!QDir().mkpath(m_directory) || !m_watcher.addPath(m_directory))
        qWarning() << "the ends of programs will not be known: cannot watch" << m_directory;
    LaunchRecord::removeEndedStarts(m_directory);
    readDirectory();
}

void ProgramWatch::readDirectory() {
    const QStringList names = QDir(m_directory).entryList({"*.json"}, QDir::Files | QDir::NoSymLinks);
    for (const QString& name : names) {
        if (!m_known.contains(name))
            readFile(m_directory + '/' + name);
    }
    m_known = names;
}

void ProgramWatch::readFile(const QString& path) {
    LaunchRecord record;
    if (!LaunchRecord::read(path, &record)) {
        qWarning() << path << "tells of no program; removing it";
        QFile::remove(path);
        return;
    }
    const Key key(record.bottle, record.program);
    Run& run = m_runs[key];
    run.bottlePath = m_store.pathOf(record.bottle);
    run.program = record.program;
    run.files += path;
    if (record.pid != 0)
        follow(key, record.pid);
    else
        check(key, true);
}

void ProgramWatch::follow(const Key& key, pid_t pid) {
    auto& alive = m_runs[key].alive;
    if (alive.count(pid))
        return;
    auto process = std::make_unique<ProcessEnd>(pid);
    connect(process.get(), &ProcessEnd::ended, this, [this, key, pid] {
        auto& rest = m_runs[key].alive;
        rest[pid].release()->deleteLater();
        rest.erase(pid);
        if (rest.empty())
            check(key, false);
    });
    alive.emplace(pid, std::move(process));
}

void ProgramWatch::check(const Key& key, bool isLast) {
    const auto found = m_runs.find(key);
    if (found == m_runs.end() || !found->second.alive.empty())
        return;
    Run& run = found->second;
    const auto members = m_processes.ofProgram(run.bottlePath, run.program);
    for (const Processes::Entry& member : members)
        follow(key, member.pid);
    if (!members.empty())
        return;
    if (!isLast) {
        QTimer::singleShot(SettleMs, this, [this, key] { check(key, true); });
        return;
    }
    for (const QString& file : qAsConst(run.files))
        QFile::remove(file);
    LaunchRecord::removeEndedStarts(m_directory);
    m_runs.erase(found);
    qInfo() << "program" << key.second << "of" << BottleName::shown(key.first) << "has ended";
    Q_EMIT exited(key.first, key.second);
}
