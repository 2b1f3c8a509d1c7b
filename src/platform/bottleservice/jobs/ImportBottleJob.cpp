#include "bottleservice/jobs/ImportBottleJob.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStorageInfo>
#include <cerrno>
#include <cstring>

#include "bottleservice/backup/RestoredPrefix.h"
#include "bottleservice/backup/RestoredSettings.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/files/TreeRemover.h"
#include "bottleservice/jobs/StagedBottle.h"
#include "bottleservice/wine/Templates.h"
#include "fenk/system/OwnedFd.h"

using Fault = Answer::Fault;

namespace {

constexpr qint64 SpareBytes = 64 * 1024 * 1024;  // for Wine's own files
constexpr qint64 EntryBytes = 4096;              // that each file takes at least
const char OldRegistry[] = "/.old-template";

Reason checkRoom(const QString& directory, const BackupList& list) {
    const qint64 room = QStorageInfo(directory).bytesAvailable();
    const qint64 needed = list.writtenBytes() + list.entries.size() * EntryBytes + SpareBytes;
    if (room < 0 || room >= needed)
        return {};
    const QLocale locale = QLocale::c();
    return Reason(Reason::TooLittleRoom, {locale.formattedDataSize(needed), locale.formattedDataSize(room)});
}

}  // namespace

ImportBottleJob::ImportBottleJob(const QString& file, const QString& name, NewBottleTools tools, Reply reply)
    : Job(std::move(reply)), m_name(name), m_tools(std::move(tools)), m_work(std::make_shared<Work>(file)) {}

void ImportBottleJob::start() {
    Background::run(
        m_tools.worker, this,
        [work = m_work, progress = m_tools.progress, root = m_tools.store.root()]() -> Reason {
            Reason failure;
            work->list = work->reader.readList(&failure);
            if (!work->list)
                return failure;
            progress->total = work->list->bytes();
            return checkRoom(root, *work->list);
        },
        [this](const Reason& reason) { onListed(reason); });
}

void ImportBottleJob::cancel() {
    m_tools.progress->cancelled = true;
    if (m_staged)
        m_staged->cancel();
}

std::optional<Runner> ImportBottleJob::chooseRunner() const {
    const QStringList names =
        QStringList{m_work->list->runner, Runners::DefaultName} + m_tools.runners.names();
    for (const QString& name : names) {
        if (const auto runner = m_tools.runners.find(name))
            return runner;
    }
    return std::nullopt;
}

void ImportBottleJob::onListed(const Reason& reason) {
    if (!reason.isEmpty() || m_tools.progress->cancelled) {
        fail(reason.isEmpty() ? Reason(Reason::Cancelled) : reason);
        return;
    }
    if (m_name.isEmpty())
        m_name = m_work->list->name;
    const Reason invalid = BottleName::check(m_name);
    const auto runner = chooseRunner();
    if (invalid.isEmpty() && freeName().isEmpty()) {
        fail(Reason(Reason::NoFreeName));
        return;
    }
    if (!invalid.isEmpty() || !runner) {
        fail(invalid.isEmpty() ? Runners::missing(Runners::DefaultName) : invalid);
        return;
    }
    m_staged = new StagedBottle(m_tools.store, m_name, *runner, m_tools.templates, m_tools.reclaimer, this);
    connect(m_staged, &StagedBottle::finished, this, &ImportBottleJob::unpack);
    m_staged->start(StagedBottle::Content::Nothing);
}

void ImportBottleJob::unpack(const Reason& reason) {
    if (!reason.isEmpty()) {
        fail(reason);
        return;
    }
    Background::run(
        m_tools.worker, this,
        [work = m_work, directory = m_staged->path(), progress = m_tools.progress]() -> Reason {
            QDir().mkdir(directory + OldRegistry);
            return work->reader.unpack(*work->list, directory, directory + OldRegistry, progress.get());
        },
        [this](const Reason& fault) { complete(fault); });
}

void ImportBottleJob::complete(const Reason& reason) {
    if (!reason.isEmpty()) {
        fail(reason);
        return;
    }
    const QString directory = m_staged->path();
    const RestoredPrefix::Place place{directory, m_tools.templates->pathOf(m_staged->templateKey()),
                                      directory + OldRegistry, m_staged->runner().wine};
    m_tools.templates->run(
        this,
        [work = m_work, place, progress = m_tools.progress](const std::atomic_bool&) {
            work->fault =
                RestoredPrefix::complete(*work->list, place, &work->isOtherBuild, progress->cancelled);
            QString error;
            if (work->fault.isEmpty() && !TreeRemover::remove(place.oldRegistry, &error))
                work->fault = Reason(Reason::FilesNotWritten, {error});
            // The bottle must not appear before its files have reached the disk.
            const Fenk::OwnedFd made(::open(QFile::encodeName(place.directory).constData(), O_RDONLY));
            if (work->fault.isEmpty() && ::syncfs(made.get()) != 0)
                work->fault =
                    Reason(Reason::CannotWrite, {place.directory, QString::fromLocal8Bit(strerror(errno))});
            return work->fault.text();
        },
        [this](const QString&) {
            ImportBottleJob::place(m_tools.progress->cancelled ? Reason(Reason::Cancelled) : m_work->fault);
        });
}

Reason ImportBottleJob::damaged(const QString& detail) const {
    return Reason(Reason::BadBackup, {QFileInfo(m_work->file).fileName(), detail});
}

QString ImportBottleJob::freeName() const {
    return RestoredSettings::freeName(m_name, [this](const QString& name) {
        return m_tools.store.state(name) != BottleStore::State::Missing || m_tools.hasJobs(name);
    });
}

QSet<QString> ImportBottleJob::takenIds() const {
    QSet<QString> ids;
    for (const QString& bottle : m_tools.store.names()) {
        QString error;
        if (const auto settings = m_tools.store.load(bottle, &error)) {
            for (const QString& id : settings->programs().keys())
                ids += id;
        }
    }
    return ids;
}

void ImportBottleJob::place(const Reason& reason) {
    const BackupList& list = *m_work->list;
    QString error;
    const auto old = reason.isEmpty()
                         ? BottleStore::loadFrom(m_staged->path(), BottleName::shown(m_name), &error)
                         : std::nullopt;
    if (!old) {
        fail(reason.isEmpty() ? damaged(error) : reason);
        return;
    }
    m_name = freeName();
    if (m_name.isEmpty()) {
        fail(Reason(Reason::NoFreeName));
        return;
    }
    m_staged->rename(m_name);
    const RestoredSettings::Place place{m_name, m_tools.store.pathOf(m_name), QDir::homePath(),
                                        m_staged->runner().name, m_staged->templateKey()};
    QStringList variables;
    const BottleYaml settings =
        RestoredSettings::adapted(*old, list, place, takenIds(), m_staged->path(), &variables);
    const Reason fault = m_staged->place(settings);
    if (!fault.isEmpty()) {
        fail(fault);
        return;
    }
    const int programs = settings.programs().size();
    qInfo() << "restored bottle" << BottleName::shown(m_name) << "with" << programs << "programs on"
            << place.runner << "; not in the backup:" << list.leftOut;
    finish(Answer::of(JsonText::compact(QJsonObject{{"ok", true},
                                                    {"bottle", m_name},
                                                    {"runner", place.runner},
                                                    {"otherWine", m_work->isOtherBuild},
                                                    {"programs", programs},
                                                    {"variables", QJsonArray::fromStringList(variables)},
                                                    {"leftOut", QJsonArray::fromStringList(list.leftOut)}})));
}

void ImportBottleJob::fail(const Reason& reason) {
    const Reason told = m_tools.progress->cancelled ? Reason(Reason::Cancelled)
                                                    : FullDisk::explain(m_tools.store.root(), reason);
    qWarning().noquote() << "no bottle was restored:"
                         << QJsonDocument(told.toJson()).toJson(QJsonDocument::Compact);
    if (m_staged)
        m_staged->discard();
    finish(Answer::failure(Fault::Failed, told));
}
