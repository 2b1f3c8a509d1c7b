#include "bottleservice/requests/OfflineImport.h"

#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QTemporaryDir>
#include <cerrno>
#include <cstring>

#include "bottleservice/components/ChosenFile.h"
#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/OfflineCheck.h"
#include "bottleservice/components/OfflineLists.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/DependencyRequests.h"

namespace {

const QLatin1String StagingPrefix(".importing-");

/// What the worker thread needs, all of it copies.
struct Taking {
    QMap<QString, QStringList> archives;  ///< path to the components that its list names
    QString dataDir;
    QString store;
    Sources sources;
    QStringList wanted;  ///< files; others of the archives are left out
};

/// Moves checked files to where downloads lie.
Reason store(const OfflineList& list, const QString& from, const Taking& taking) {
    for (auto file = list.files.begin(); file != list.files.end(); ++file) {
        if (!taking.wanted.contains(file.key()))
            continue;
        // First, since a file that is there without its checksum could be used unchecked.
        const Source known = taking.sources.find(file.key());
        if (known.sha256.isEmpty() || known.isChosen) {
            const Reason failure = ChosenFile::remember(taking.dataDir, file.key(), file->sha256);
            if (!failure.isEmpty())
                return failure;
        }
        const QString target = taking.store + '/' + file.key();
        if (::rename(QFile::encodeName(from + '/' + file.key()).constData(),
                     QFile::encodeName(target).constData()) != 0)
            return Reason::ofWriting(target, false, QString::fromLocal8Bit(strerror(errno)));
    }
    return {};
}

Reason takeArchive(const QString& archive, const Taking& taking, const std::atomic_bool& cancelled) {
    QDir().mkpath(taking.store);
    const QTemporaryDir staging(taking.store + '/' + StagingPrefix + "XXXXXX");
    if (!staging.isValid())
        return Reason::ofWriting(taking.store, false, staging.errorString());
    OfflineList list;
    Reason failure = OfflineArchive::unpack(archive, staging.path(), &list, cancelled);
    if (failure.isEmpty())
        failure = OfflineCheck::conflict(list, taking.sources, QFileInfo(archive).fileName());
    return failure.isEmpty() ? store(list, staging.path(), taking) : failure;
}

/// Returns the components that no usable archive has, with the reasons.
QHash<QString, Reason> takeArchives(const Taking& taking, const std::atomic_bool& cancelled) {
    QHash<QString, Reason> failures;
    QStringList taken;
    const auto& archives = taking.archives;
    for (auto archive = archives.begin(); archive != archives.end(); ++archive) {
        const Reason failure = takeArchive(archive.key(), taking, cancelled);
        if (failure.isEmpty())
            taken += *archive;
        else
            qWarning() << "nothing of" << archive.key() << "is imported:" << failure.text();
        for (const QString& component : failure.isEmpty() ? QStringList() : *archive)
            failures.insert(component, failure);
    }
    for (const QString& component : qAsConst(taken))
        failures.remove(component);
    return failures;
}

}  // namespace

OfflineImport::OfflineImport(const Asked& asked, BottleEngine* engine, DependencyRequests* dependencies,
                             QObject* parent)
    : OfflineTransfer(parent), m_asked(asked), m_engine(engine), m_dependencies(dependencies) {}

void OfflineImport::start() {
    m_engine->waitBeforeInstall(m_asked.bottle, this, [this](const QStringList& running) {
        if (running.isEmpty() || isCancelled())
            readLists();
        else
            refuse(Answer::busy(running));
    });
}

void OfflineImport::cancel() {
    OfflineTransfer::cancel();
    if (!m_current.isEmpty())
        m_dependencies->cancelNumber(m_asked.bottle, m_currentNumber);
}

void OfflineImport::refuse(const Answer& answer) {
    finish();
    Q_EMIT begun(answer);
}

void OfflineImport::readLists() {
    Background::run(
        this,
        [paths = m_asked.archives, sources = m_dependencies->sources(), cancelled = cancelled()] {
            return OfflineLists::read(paths, sources, *cancelled);
        },
        [this](const OfflineLists& lists) { onListsRead(lists); });
}

void OfflineImport::onListsRead(const OfflineLists& lists) {
    const auto isAsked = [this](const QString& component) {
        return m_asked.components.isEmpty() || m_asked.components.contains(component);
    };
    QMap<QString, QStringList> archives;
    QStringList found;
    for (auto it = lists.good.begin(); it != lists.good.end(); ++it) {
        for (const QString& component : it->components.keys()) {
            if (isAsked(component))
                archives[it.key()] += component;
        }
        found += archives.value(it.key());
    }
    found.removeDuplicates();
    const Reason faults = lists.faults();
    const Reason absent =
        faults.isEmpty() ? Reason(Reason::NoComponent, {m_asked.components.value(0)}) : faults;
    if (found.isEmpty() || isCancelled()) {
        refuse(Answer::failure(Answer::Fault::Failed, isCancelled() ? Reason(Reason::Cancelled) : absent));
        return;
    }
    Q_EMIT begun(Answer::of());
    for (const QString& component : qAsConst(found))
        setRunning(component);
    for (const QString& component : m_asked.components + lists.lost.keys()) {
        if (isAsked(component) && !found.contains(component))
            setFailed(component,
                      lists.lost.value(component,
                                       faults.isEmpty() ? Reason(Reason::NoComponent, {component}) : faults));
    }
    m_waiting = OfflineCheck::inOrder(found, m_dependencies->recipes());
    unpack(archives);
}

void OfflineImport::unpack(const QMap<QString, QStringList>& archives) {
    Taking taking{archives, m_asked.dataDir, m_asked.store, m_dependencies->sources(), {}};
    const Recipes recipes = m_dependencies->recipes();
    for (const QString& component : qAsConst(m_waiting)) {
        for (const QString& each : OfflineCheck::needed(component, recipes) + QStringList{component}) {
            if (const auto recipe = recipes.find(each))
                taking.wanted += recipe->files();
        }
    }
    Background::run(
        this, [taking, cancelled = cancelled()] { return takeArchives(taking, *cancelled); },
        [this](const Failures& failures) {
            m_failures = failures;
            next();
        });
}

void OfflineImport::next() {
    const Recipes recipes = m_dependencies->recipes();
    while (!m_waiting.isEmpty()) {
        const QString component = m_waiting.takeFirst();
        Reason failure = isCancelled() ? Reason(Reason::Cancelled) : m_failures.value(component);
        for (const QString& needed : OfflineCheck::needed(component, recipes)) {
            if (failure.isEmpty())
                failure = m_failures.value(needed);
        }
        if (failure.isEmpty()) {
            m_current = component;
            m_currentNumber = m_dependencies->installFromStore(
                m_asked.bottle, component,
                [self = QPointer<OfflineImport>(this), component](const Answer& result) {
                    if (self)
                        self->onInstalled(component, result);
                });
            return;
        }
        m_failures.insert(component, failure);
        setFailed(component, failure);
    }
    finish();
}

void OfflineImport::onInstalled(const QString& component, const Answer& result) {
    m_current.clear();
    if (!result.isGood())
        m_failures.insert(component, result.reason);
    setResult(component, result);
    // Later, so that the line of installations has been brought up to date.
    QMetaObject::invokeMethod(this, &OfflineImport::next, Qt::QueuedConnection);
}

QStringList OfflineImport::leftovers(const QString& store) {
    QStringList paths;
    for (const QString& name :
         QDir(store).entryList({QString(StagingPrefix) + '*'}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks))
        paths += store + '/' + name;
    return paths;
}
