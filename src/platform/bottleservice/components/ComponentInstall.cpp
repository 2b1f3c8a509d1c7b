#include "bottleservice/components/ComponentInstall.h"

#include <sys/stat.h>

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Archive.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/FileFetch.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/files/WorkingDirectory.h"

namespace {

constexpr int MaximumDepth = 2;
// Proton contains a prefix with a link to the root of the disk. Bottles are made from templates instead.
const QLatin1String ReadyPrefix("share/default_pfx");

/// Finds the component in the unpacked files. Most archives have it in one directory, named after the
/// version, some beside other files or one directory deeper. The nearest one counts.
QString rootOf(const QString& kind, const QString& directory) {
    QStringList level{directory};
    for (int depth = 0; depth <= MaximumDepth; ++depth) {
        QStringList next;
        for (const QString& path : qAsConst(level)) {
            if (ComponentStore::fault(kind, path).isEmpty())
                return path;
            for (const QString& name :
                 QDir(path).entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot))
                next += path + '/' + name;
        }
        level = next;
    }
    return directory;
}

void makeReadOnly(const QString& directory) {
    QDirIterator walk(directory, QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QByteArray path = QFile::encodeName(walk.next());
        struct stat status = {};
        if (::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode))
            ::chmod(path.constData(), status.st_mode & 0555);
    }
}

}  // namespace

ComponentInstall::ComponentInstall(const ComponentStore& store, const Sources& sources, Downloads* downloads,
                                   Reclaimer* reclaimer, const QString& kind, const QString& name,
                                   QObject* parent)
    : QObject(parent),
      m_store(store),
      m_sources(sources),
      m_downloads(downloads),
      m_reclaimer(reclaimer),
      m_kind(kind),
      m_name(name) {}

ComponentInstall::~ComponentInstall() {
    *m_cancelled = true;
}

void ComponentInstall::start() {
    const Source source = m_sources.find(m_sources.archiveOf(m_kind, m_name));
    const Reason refusal = m_sources.refusal(m_kind, m_name);
    if (!refusal.isEmpty()) {
        QMetaObject::invokeMethod(
            this, [this, refusal] { finish(refusal); }, Qt::QueuedConnection);
        return;
    }
    m_archive = m_downloads->pathOf(source.file);
    m_fetch = new FileFetch(m_downloads, {source}, this);
    connect(m_fetch, &FileFetch::progress, this, &ComponentInstall::progress);
    connect(m_fetch, &FileFetch::finished, this, [this](const Reason& reason) {
        if (reason.isEmpty())
            unpack();
        else
            finish(reason);
    });
    m_fetch->start();
}

void ComponentInstall::cancel() {
    *m_cancelled = true;
    if (m_fetch)
        m_fetch->cancel();
}

void ComponentInstall::unpack() {
    const QString target = m_store.pathOf(m_kind, m_name);
    if (QFileInfo::exists(target) && !ComponentStore::fault(m_kind, target).isEmpty())
        m_reclaimer->remove(target, WorkingDirectory::DeletingPrefix);  // damaged
    m_directory = WorkingDirectory::pathBeside(target, WorkingDirectory::CreatingPrefix);
    if (!QDir().mkpath(m_directory)) {
        finish(QString("Cannot make %1.").arg(m_directory));
        return;
    }
    Background::run(
        this,
        [archive = m_archive, directory = m_directory, cancelled = m_cancelled, kind = m_kind,
         target]() -> Reason {
            Reason fault = Archive::unpack(archive, directory, *cancelled, ReadyPrefix);
            if (!fault.isEmpty())
                return fault;
            const QString root = rootOf(kind, directory);
            const QString notOfKind = ComponentStore::fault(kind, root);
            if (!notOfKind.isEmpty())
                return QFileInfo(archive).fileName() + " is not what it should be. " + notOfKind;
            fault = Archive::leavingLink(root);
            if (!fault.isEmpty())
                return fault;
            makeReadOnly(root);
            return WorkingDirectory::moveInto(root, target);
        },
        [this](const Reason& reason) { onUnpacked(reason); });
}

void ComponentInstall::onUnpacked(const Reason& reason) {
    if (QFileInfo::exists(m_directory))
        m_reclaimer->remove(m_directory);
    finish(reason);
}

void ComponentInstall::finish(const Reason& reason) {
    if (std::exchange(m_done, true))
        return;
    if (reason.isEmpty())
        qInfo() << "installed" << m_kind << m_name;
    else
        qWarning() << m_kind << BottleName::shown(m_name) << "was not installed:" << reason.text();
    Q_EMIT finished(reason);
}
