#include "bottleservice/jobs/PortableBottleJob.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStorageInfo>
#include <QUuid>
#include <cerrno>
#include <cstring>

#include "bottleservice/backup/RestoredSettings.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/BottleScan.h"
#include "bottleservice/bottles/FoundPrograms.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/jobs/StagedBottle.h"
#include "bottleservice/portable/PortableName.h"
#include "fenk/system/OwnedFd.h"

using Fault = Answer::Fault;

namespace {

constexpr qint64 SpareBytes = 64 * 1024 * 1024;  // for Wine's own files
constexpr qint64 EntryBytes = 4096;              // that each file takes at least
constexpr int MaximumPrograms = 2000;
const char Programs[] = "/drive_c/Program Files";

/// A copy of the bottles into one of them would have no end.
Reason checkPlace(const QString& source, const QString& root) {
    const QString real = QFileInfo(source).canonicalFilePath();
    const QString bottles = QFileInfo(root).canonicalFilePath() + '/';
    const bool holdsThem = !real.isEmpty() && bottles.startsWith(real.endsWith('/') ? real : real + '/');
    return holdsThem ? Reason(Reason::UnfitFolder, {source}) : Reason();
}

Reason checkRoom(const QString& root, const PortableSource& source) {
    const qint64 room = QStorageInfo(root).bytesAvailable();
    const qint64 needed = source.bytes() + source.entries() * EntryBytes + SpareBytes;
    if (room < 0 || room >= needed)
        return {};
    const QLocale locale = QLocale::c();
    return Reason(Reason::TooLittleRoom, {locale.formattedDataSize(needed), locale.formattedDataSize(room)});
}

/// A record of the program that a user would start. The survey has seen that there are some.
QJsonObject likelyProgram(const QString& bottle, const QString& directory) {
    QStringList files;
    QDirIterator walk(directory, {"*.exe", "*.bat"}, QDir::Files | QDir::NoSymLinks | QDir::Hidden,
                      QDirIterator::Subdirectories);
    while (walk.hasNext() && files.size() < MaximumPrograms)
        files += walk.next();
    const QString file = (FoundPrograms::likely(bottle, files) + files).value(0);
    return {{"id", QUuid::createUuid().toString(QUuid::WithoutBraces)},
            {"name", QFileInfo(file).completeBaseName()},
            {"path", BottleScan::windowsPath(bottle, file)}};
}

/// The bottle must not appear before its files have reached the disk.
Reason flush(const QString& directory) {
    const Fenk::OwnedFd made(::open(QFile::encodeName(directory).constData(), O_RDONLY | O_CLOEXEC));
    if (made.isValid() && ::syncfs(made.get()) == 0)
        return {};
    return Reason::ofWriting(directory, errno == ENOSPC || errno == EDQUOT,
                             QString::fromLocal8Bit(strerror(errno)));
}

}  // namespace

PortableBottleJob::PortableBottleJob(const QString& source, NewBottleTools tools, Reply reply)
    : Job(std::move(reply)), m_source(source), m_tools(std::move(tools)) {}

void PortableBottleJob::start() {
    Background::run(
        m_tools.worker, this,
        [work = m_work, progress = m_tools.progress, path = m_source,
         root = m_tools.store.root()]() -> Reason {
            Reason failure = checkPlace(path, root);
            if (failure.isEmpty())
                work->source = PortableSource::at(path, &failure);
            if (failure.isEmpty())
                failure = work->source->survey(progress->cancelled);
            if (failure.isEmpty())
                failure = checkRoom(root, *work->source);
            return failure;
        },
        [this](const Reason& reason) { onSurveyed(reason); });
}

void PortableBottleJob::cancel() {
    m_tools.progress->cancelled = true;
    if (m_staged)
        m_staged->cancel();
}

/// Another than the default only where that can't be had or can't run the programs.
std::optional<Runner> PortableBottleJob::chooseRunner() const {
    std::optional<Runner> chosen;
    for (const QString& name : QStringList(Runners::DefaultName) + m_tools.runners.names()) {
        const auto runner = m_tools.runners.find(name);
        if (runner && m_work->source->needs32Bit() && Runners::runs32Bit(runner->wine))
            return runner;
        if (!chosen)
            chosen = runner;
    }
    return chosen;
}

void PortableBottleJob::onSurveyed(const Reason& reason) {
    if (!reason.isEmpty() || m_tools.progress->cancelled) {
        fail(reason.isEmpty() ? Reason(Reason::Cancelled) : reason);
        return;
    }
    const auto runner = chooseRunner();
    if (!runner) {
        fail(m_tools.runners.missing(Runners::DefaultName));
        return;
    }
    m_staged = new StagedBottle(m_tools.store, PortableName::bottle(m_source), *runner, m_tools.templates,
                                m_tools.reclaimer, this);
    connect(m_staged, &StagedBottle::finished, this, &PortableBottleJob::copy);
    m_staged->start();
}

void PortableBottleJob::copy(const Reason& reason) {
    if (!reason.isEmpty() || m_tools.progress->cancelled) {
        fail(reason.isEmpty() ? Reason(Reason::Cancelled) : reason);
        return;
    }
    // Known only now, since the template may have taken a while.
    m_tools.progress->total = m_work->source->bytes();
    Background::run(
        m_tools.worker, this,
        [work = m_work, progress = m_tools.progress, directory = m_staged->path(),
         name = PortableName::folder(m_source)]() -> Reason {
            const QString programs = directory + Programs;
            // The template has folders of Wine's own there.
            if (!QDir().mkpath(programs) || !QDir(programs).mkdir(name))
                return Reason(Reason::CannotWrite,
                              {programs + '/' + name, QString::fromLocal8Bit(strerror(errno))});
            const Reason fault = work->source->copyTo(programs + '/' + name, progress.get());
            work->program = likelyProgram(directory, programs + '/' + name);
            return fault.isEmpty() ? flush(directory) : fault;
        },
        [this](const Reason& fault) {
            place(m_tools.progress->cancelled ? Reason(Reason::Cancelled) : fault);
        });
}

QString PortableBottleJob::freeName() const {
    return RestoredSettings::freeName(PortableName::bottle(m_source), [this](const QString& name) {
        return m_tools.store.state(name) != BottleStore::State::Missing || m_tools.hasJobs(name);
    });
}

void PortableBottleJob::place(const Reason& reason) {
    const QString name = freeName();
    if (!reason.isEmpty() || name.isEmpty()) {
        fail(reason.isEmpty() ? Reason("There is no free name for the bottle.") : reason);
        return;
    }
    m_staged->rename(name);
    BottleYaml settings = m_staged->freshSettings();
    const QString program = m_work->program["id"].toString();
    settings.setProgram(program, m_work->program);
    const Reason fault = m_staged->place(settings);
    if (!fault.isEmpty()) {
        fail(fault);
        return;
    }
    const PortableSource& source = *m_work->source;
    qInfo() << "made bottle" << BottleName::shown(name) << "of" << m_source << "with" << source.entries()
            << "entries; not copied:" << source.leftOut();
    finish(Answer::of(
        JsonText::compact(QJsonObject{{"ok", true},
                                      {"bottle", name},
                                      {"path", m_tools.store.pathOf(name)},
                                      {"folder", "C:\\Program Files\\" + PortableName::folder(m_source)},
                                      {"program", program},
                                      {"leftOut", QJsonArray::fromStringList(source.leftOut())}})));
}

void PortableBottleJob::fail(const Reason& reason) {
    const Reason told =
        m_tools.progress->cancelled ? reason : FullDisk::explain(m_tools.store.root(), reason);
    qWarning().noquote() << "no bottle was made of" << m_source << ':'
                         << QJsonDocument(told.toJson()).toJson(QJsonDocument::Compact);
    if (m_staged)
        m_staged->discard();
    finish(Answer::failure(Fault::Failed, told));
}
