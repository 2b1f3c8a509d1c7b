#include "bottleservice/wine/RunMonitor.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/RunOwners.h"
#include "bottleservice/wine/RunningPrograms.h"

namespace {

constexpr int SoonMs = 50;  // during an exec a process has no environment
constexpr int QuickMs = 250;
constexpr int QuickChecks = 20;
constexpr int RegularMs = 2000;

}  // namespace

RunMonitor::RunMonitor(const BottleStore& store, QObject* parent) : QObject(parent), m_store(store) {
    m_soon.setSingleShot(true);
    m_soon.setInterval(SoonMs);
    m_regular.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &RunMonitor::check);
    connect(&m_regular, &QTimer::timeout, this, &RunMonitor::check);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &RunMonitor::onScript);
}

void RunMonitor::start() {
    if (!QDir().mkpath(m_store.runningDir()) || !m_watcher.addPath(m_store.runningDir()))
        qWarning() << "starts of programs will be noticed late: cannot watch" << m_store.runningDir();
    check();
}

void RunMonitor::onScript() {
    m_quickChecks = QuickChecks;
    checkSoon();
}

void RunMonitor::checkSoon() {
    if (!m_soon.isActive())
        m_soon.start();
}

const RunMonitor::Runs& RunMonitor::check() {
    std::set<pid_t> alive;
    Runs now = find(&alive);
    bool isMissing = false;
    for (const auto& run : m_runs)
        isMissing = isMissing || !now.count(run.first);
    // A program has ended when it was not found twice in a row.
    if (isMissing && !m_isMissing) {
        for (const auto& run : m_runs) {
            if (!now.count(run.first))
                now[run.first] = {};
        }
        checkSoon();
    }
    m_isMissing = isMissing && !m_isMissing;
    change(now);
    follow(alive);
    if (alive.empty() && m_claims == 0) {
        m_quickChecks = 0;
        m_regular.stop();
    } else {
        const bool isQuick = m_quickChecks > 0 && --m_quickChecks > 0;
        m_regular.setTimerType(isQuick ? Qt::CoarseTimer : Qt::VeryCoarseTimer);
        m_regular.start(isQuick ? QuickMs : RegularMs);
    }
    return m_runs;
}

/// `alive` gets all processes that may start an entered program: scripts, and programs that are not entered.
RunMonitor::Runs RunMonitor::find(std::set<pid_t>* alive) {
    std::map<QString, std::vector<Processes::Entry>> processes;
    for (const Processes::Entry& process : m_processes.all()) {
        const QString bottle = RunningPrograms::isHelper(process) ? QString() : bottleOf(process);
        if (!bottle.isEmpty())
            processes[bottle].push_back(process);
    }
    const QVector<LaunchRecord::Claim> claims = LaunchRecord::claims(m_store.runningDir());
    m_claims = claims.size();
    for (const LaunchRecord::Claim& claim : claims)
        processes[claim.bottle];
    for (auto it = m_owners.begin(); it != m_owners.end();)
        it = processes.count(it->first) ? std::next(it) : m_owners.erase(it);
    Runs runs;
    for (const auto& [bottle, entries] : processes) {
        const RunOwners* owners = ownersIn(bottle);
        if (!owners)
            continue;
        for (const Processes::Entry& process : entries) {
            alive->insert(process.pid);
            for (const QString& program : owners->of(process))
                runs[{bottle, program}].insert(process.pid);
        }
        for (const LaunchRecord::Claim& claim : claims) {
            if (claim.bottle != bottle)
                continue;
            alive->insert(claim.pid);
            const QString program = owners->of(claim);
            if (!program.isEmpty())
                runs[{bottle, program}];
        }
    }
    return runs;
}

/// Nothing for a bottle whose settings cannot be read.
const RunOwners* RunMonitor::ownersIn(const QString& bottle) {
    QString error;
    const auto settings = m_store.check(bottle).isEmpty() ? m_store.load(bottle, &error) : std::nullopt;
    if (!settings)
        return nullptr;
    const QJsonObject records = settings->programs();
    const auto known = m_owners.find(bottle);
    if (known != m_owners.end() && known->second.records() == records) {
        known->second.forgetFiles();
        return &known->second;
    }
    return &m_owners.insert_or_assign(bottle, RunOwners(m_store.pathOf(bottle), records)).first->second;
}

/// Empty for a prefix that is none of the bottles.
QString RunMonitor::bottleOf(const Processes::Entry& process) const {
    const QString root = QFileInfo(m_store.root()).canonicalFilePath() + '/';
    const QString path = QFileInfo(QFile::decodeName(process.prefix)).canonicalFilePath();
    const QString name = path.startsWith(root) ? path.mid(root.size()) : QString();
    return BottleName::check(name).isEmpty() ? name : QString();
}

void RunMonitor::change(const Runs& now) {
    const Runs before = std::exchange(m_runs, now);
    for (const auto& [key, pids] : before) {
        if (now.count(key))
            continue;
        qInfo() << "program" << key.second << "of" << BottleName::shown(key.first) << "runs no more";
        Q_EMIT ended(key.first, key.second);
    }
    for (const auto& [key, pids] : now) {
        if (before.count(key))
            continue;
        qInfo() << "program" << key.second << "of" << BottleName::shown(key.first) << "runs";
        Q_EMIT started(key.first, key.second);
    }
}

void RunMonitor::follow(const std::set<pid_t>& alive) {
    for (auto it = m_followed.begin(); it != m_followed.end();)
        it = alive.count(it->first) ? std::next(it) : m_followed.erase(it);
    for (const pid_t pid : alive) {
        if (m_followed.count(pid))
            continue;
        auto process = std::make_unique<ProcessEnd>(pid);
        connect(process.get(), &ProcessEnd::ended, this, &RunMonitor::checkSoon);
        m_followed.emplace(pid, std::move(process));
    }
}
