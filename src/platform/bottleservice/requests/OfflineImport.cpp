#include "bottleservice/requests/OfflineImport.h"

#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cerrno>
#include <cstring>

#include "bottleservice/components/ChosenFile.h"
#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/OfflineCheck.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/requests/DependencyRequests.h"

namespace {

const QLatin1String StagingPrefix(".importing-");

/// What the worker thread needs, all of it copies.
struct Taking {
    OfflineImport::Asked asked;
    Sources sources;
    QStringList wanted;  ///< files; others of the archives are left out
};

/// Moves checked files to where downloads lie.
Reason store(const OfflineList& list, const QString& from, const Taking& taking) {
    for (auto file = list.files.begin(); file != list.files.end(); ++file) {
        if (!taking.wanted.contains(file.key()))
            continue;
        const QString target = taking.asked.store + '/' + file.key();
        if (::rename(QFile::encodeName(from + '/' + file.key()).constData(),
                     QFile::encodeName(target).constData()) != 0)
            return Reason::ofWriting(target, false, QString::fromLocal8Bit(strerror(errno)));
        const Source known = taking.sources.find(file.key());
        if (!known.sha256.isEmpty() && !known.isChosen)
            continue;
        const Reason failure = ChosenFile::remember(taking.asked.dataDir, file.key(), file->sha256);
        if (!failure.isEmpty())
            return failure;
    }
    return {};
}

Reason takeArchive(const QString& archive, const Taking& taking, const std::atomic_bool& cancelled) {
    QDir().mkpath(taking.asked.store);
    const QTemporaryDir staging(taking.asked.store + '/' + StagingPrefix + "XXXXXX");
    if (!staging.isValid())
        return Reason::ofWriting(taking.asked.store, false, staging.errorString());
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
    const auto& archives = taking.asked.archives;
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

OfflineImport::OfflineImport(const Asked& asked, DependencyRequests* dependencies, QObject* parent)
    : OfflineTransfer(parent), m_asked(asked), m_dependencies(dependencies) {}

void OfflineImport::start() {
    for (const QString& component : qAsConst(m_asked.components))
        setRunning(component);
    Taking taking{m_asked, m_dependencies->sources(), {}};
    const Recipes recipes = m_dependencies->recipes();
    for (const QString& component : qAsConst(m_asked.components)) {
        if (const auto recipe = recipes.find(component))
            taking.wanted += recipe->files();
    }
    Background::run(
        this, [taking, cancelled = cancelled()] { return takeArchives(taking, *cancelled); },
        [this](const Failures& failures) {
            m_failures = failures;
            install();
        });
}

void OfflineImport::cancel() {
    OfflineTransfer::cancel();
    if (!m_current.isEmpty())
        m_dependencies->cancel(m_asked.bottle, [](const Answer&) {});
}

void OfflineImport::install() {
    m_waiting = OfflineCheck::inOrder(m_asked.components, m_dependencies->recipes());
    connect(m_dependencies, &DependencyRequests::done, this,
            [this](const QString& bottle, const QString& component, const Answer& result) {
                if (bottle == m_asked.bottle && component == m_current)
                    onInstalled(component, result);
            });
    next();
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
            // The result comes with done().
            m_dependencies->installFromStore(m_asked.bottle, component, [](const Answer&) {});
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
