#include "bottleservice/wine/Templates.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/wine/MenuBuilder.h"
#include "bottleservice/wine/PrefixBuilder.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/TemplateRecord.h"

namespace {

// Increase when this program changes the content of templates.
constexpr int Generation = 2;
constexpr int Threads = 2;
constexpr int ProgressMs = 300;
constexpr int SlimmedPercent = 98;

void addFile(QCryptographicHash* hash, const QString& path) {
    const QFileInfo info(path);
    hash->addData(QString("%1 %2 %3\n")
                      .arg(info.canonicalFilePath())
                      .arg(info.size())
                      .arg(info.lastModified().toMSecsSinceEpoch())
                      .toUtf8());
}

}  // namespace

Templates::Templates(const QString& dataDir, Reclaimer* reclaimer, QObject* parent)
    : QObject(parent), m_dataDir(dataDir), m_directory(dataDir + "/templates"), m_reclaimer(reclaimer) {
    m_worker.setMaxThreadCount(Threads);
    m_progressTimer.setInterval(ProgressMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &Templates::tellProgress);
}

Templates::~Templates() {
    *m_cancelled = true;
    m_worker.waitForDone();
}

QString Templates::keyOf(const Runner& runner) {
    if (runner.wine.isEmpty())
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray::number(Generation));
    addFile(&hash, runner.wine);
    // Packages for 32 and 64 bits are installed separately.
    for (const QString& directory : SlimPrefix::peDirectories(runner.wine)) {
        for (const char* name : {"/ntdll.dll", "/kernel32.dll", "/wineboot.exe"})
            addFile(&hash, directory + name);
    }
    return QString::fromLatin1(hash.result().toHex());
}

bool Templates::isMissing(const Runner& runner) const {
    return !PrefixBuilder::check(pathOf(keyOf(runner))).isEmpty();
}

void Templates::prepare(const Runner& runner, QObject* context, Ready ready) {
    await(keyOf(runner), runner, context, std::move(ready), Urgency::InAdvance);
}

void Templates::obtain(const Runner& runner, QObject* context, Ready ready) {
    const QString key = keyOf(runner);
    const QString path = pathOf(key);
    if (isMissing(runner)) {
        await(key, runner, context, std::move(ready));
        return;
    }
    TemplateRecord::note(m_dataDir, {runner.name}, key);
    QMetaObject::invokeMethod(
        context, [ready = std::move(ready), path] { ready(path, {}); }, Qt::QueuedConnection);
}

void Templates::recreate(const Runner& runner, QObject* context, Ready ready) {
    const QString key = keyOf(runner);
    // Also on failure, so that nobody is asked to try the same again at each start.
    TemplateRecord::note(m_dataDir, {runner.name}, key);
    await(key, runner, context, std::move(ready));
}

void Templates::await(const QString& key, const Runner& runner, QObject* context, Ready ready,
                      Urgency urgency) {
    const bool isBuilding = m_builds.contains(key);
    Build& entry = m_builds[key];
    entry.waiters.append({context, std::move(ready)});
    entry.runners.append(runner.name);
    entry.toldPercent = -1;  // the new caller needs the progress so far
    if (urgency == Urgency::Awaited && !std::exchange(entry.isAwaited, true) && entry.builder) {
        qInfo() << "the template that is being prepared is needed now";
        entry.builder->raise();
    }
    m_progressTimer.start();
    if (isBuilding)
        tellProgress();
    else
        build(key, runner);
}

bool Templates::isAlmostDone() const {
    return std::all_of(m_builds.begin(), m_builds.end(), [](const Build& entry) {
        return !entry.builder || entry.builder->progress() >= PrefixBuilder::BootedPercent;
    });
}

bool Templates::isAwaited() const {
    return std::any_of(m_builds.begin(), m_builds.end(), [](const Build& entry) { return entry.isAwaited; });
}

void Templates::pausePreparation() {
    for (const Build& entry : qAsConst(m_builds)) {
        if (!entry.isAwaited && entry.builder)
            entry.builder->pause();
    }
}

void Templates::resumePreparation() {
    for (const Build& entry : qAsConst(m_builds)) {
        if (!entry.isAwaited && entry.builder)
            entry.builder->resume();
    }
}

void Templates::tellProgress() {
    for (Build& entry : m_builds) {
        if (!entry.isAwaited)
            continue;
        if (entry.builder)
            entry.percent = qMax(entry.percent, entry.builder->progress());
        if (std::exchange(entry.toldPercent, entry.percent) == entry.percent)
            continue;
        QStringList runners = entry.runners;
        runners.removeDuplicates();
        for (const QString& runner : qAsConst(runners))
            Q_EMIT progress(runner, entry.percent);
    }
}

void Templates::build(const QString& key, const Runner& runner) {
    Build& entry = m_builds[key];
    entry.directory = WorkingDirectory::pathBeside(pathOf(key), WorkingDirectory::CreatingPrefix);
    if (QFileInfo::exists(pathOf(key)) && !PrefixBuilder::check(pathOf(key)).isEmpty()) {
        qWarning() << "the template" << pathOf(key) << "is damaged and is made again";
        m_reclaimer->remove(pathOf(key), WorkingDirectory::DeletingPrefix);
    }
    qInfo() << "making the template of" << runner.name << "in" << entry.directory;
    if (!QDir().mkpath(entry.directory)) {
        QMetaObject::invokeMethod(
            this, [this, key] { conclude(key, QString("Cannot make a directory in %1.").arg(m_directory)); },
            Qt::QueuedConnection);
        return;
    }
    entry.builder = new PrefixBuilder(runner, entry.directory, this);
    connect(entry.builder, &PrefixBuilder::finished, this,
            [this, key, runner](const QString& errorText) { onBuilt(key, errorText, runner); });
    entry.builder->start(entry.isAwaited ? PrefixBuilder::Priority::Ordinary : PrefixBuilder::Priority::Low);
}

void Templates::onBuilt(const QString& key, const QString& errorText, const Runner& runner) {
    Build& entry = m_builds[key];
    entry.percent = qMax(entry.percent, entry.builder->progress());
    entry.builder->deleteLater();
    entry.builder = nullptr;
    if (!errorText.isEmpty()) {
        conclude(key, errorText);
        return;
    }
    const QString directory = entry.directory;
    run(
        this,
        [directory, wine = runner.wine](const std::atomic_bool& cancelled) {
            const QString fault = MenuBuilder::removeFromStart(directory);
            return fault.isEmpty() ? SlimPrefix::slim(directory, wine, cancelled) : fault;
        },
        [this, key](const QString& fault) {
            if (fault.isEmpty())
                place(key);
            else
                conclude(key, fault);
        });
}

void Templates::place(const QString& key) {
    m_builds[key].percent = SlimmedPercent;
    tellProgress();
    run(
        Access::Alone, this,
        [directory = m_builds[key].directory, path = pathOf(key)](const std::atomic_bool&) {
            return QFileInfo::exists(path) ? WorkingDirectory::exchange(directory, path)
                                           : WorkingDirectory::moveInto(directory, path);
        },
        [this, key](const QString& fault) { conclude(key, fault); });
}

void Templates::conclude(const QString& key, const QString& fault) {
    Reason reason = fault;
    if (!fault.isEmpty() && !*m_cancelled) {
        const QString detail = fault.endsWith('.') ? fault.chopped(1) : fault;
        reason = FullDisk::explain(m_dataDir, Reason(Reason::TemplateFailed, {detail}));
    }
    if (reason.isEmpty()) {
        m_builds[key].percent = 100;
        tellProgress();
    }
    const Build entry = m_builds.take(key);
    if (m_builds.isEmpty())
        m_progressTimer.stop();
    if (reason.isEmpty()) {
        qInfo() << "made the template" << pathOf(key);
        TemplateRecord::note(m_dataDir, entry.runners, key);
    } else {
        qWarning() << "the template was not made:" << reason.text();
    }
    // The rest of a failed template, or the old template.
    if (QFileInfo::exists(entry.directory))
        m_reclaimer->remove(entry.directory);
    for (const Waiter& waiter : entry.waiters) {
        if (waiter.context)
            waiter.ready(reason.isEmpty() ? pathOf(key) : QString(), reason);
    }
    checkIdle();
}

void Templates::run(QObject* context, Work work, std::function<void(const QString&)> done) {
    run(Access::Shared, context, std::move(work), std::move(done));
}

void Templates::run(Access access, QObject* context, Work work, std::function<void(const QString&)> done) {
    ++m_running;
    Background::run(
        &m_worker, this,
        [this, access, work = std::move(work), cancelled = m_cancelled] {
            if (access == Access::Alone) {
                const QWriteLocker alone(&m_access);
                return work(*cancelled);
            }
            const QReadLocker shared(&m_access);
            return work(*cancelled);
        },
        [this, receiver = QPointer<QObject>(context), done = std::move(done)](const QString& errorText) {
            --m_running;
            if (receiver)
                done(errorText);
            checkIdle();
        });
}

void Templates::removeAllBut(const QStringList& keys) {
    for (const QString& entry :
         QDir(m_directory).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        if (keys.contains(entry))
            continue;
        qInfo() << "no bottle and no Wine needs the template" << pathOf(entry);
        m_reclaimer->remove(pathOf(entry), WorkingDirectory::DeletingPrefix);
    }
}

void Templates::cancel() {
    *m_cancelled = true;
    for (const Build& entry : qAsConst(m_builds)) {
        if (entry.builder)
            entry.builder->cancel();
    }
}

void Templates::checkIdle() {
    if (isIdle())
        Q_EMIT idle();
}
