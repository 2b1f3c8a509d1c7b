#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <memory>

#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/SourceFile.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "fenk/system/OwnedFd.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr mode_t FileMode = 0644;
constexpr qint64 MaximumPath = 4096;
const QLatin1String Suffix(".cellarix-new");

struct Close {
    void operator()(archive* handle) const { archive_write_free(handle); }
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

Reason systemFailure(const QString& path, int error) {
    return Reason::ofWriting(path, error == ENOSPC || error == EDQUOT,
                             QString::fromLocal8Bit(strerror(error)));
}

/// Passes a file of the store, block by block, to a function, and sets what it is. A link is the user's own.
Reason measureFile(const QString& path, OfflineList::File* measured, const std::atomic_bool& cancelled,
                   const SourceFile::Take& take) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed))
        return Reason(Reason::NoOrdinaryFile, {path});
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const Reason failure = SourceFile::readBlocks(&file, path, cancelled, [&](const QByteArray& block) {
        hash.addData(block);
        measured->size += block.size();
        return take(block);
    });
    measured->sha256 = hash.result().toHex();
    return failure;
}

class Writer {
public:
    Writer(int fd, const QString& path) : m_path(path), m_writer(archive_write_new()) {
        archive_write_set_format_pax_restricted(m_writer.get());
        archive_write_open_fd(m_writer.get(), fd);
    }

    Reason begin(const QString& name, qint64 size) {
        const std::unique_ptr<archive_entry, Close> entry(archive_entry_new());
        archive_entry_set_pathname(entry.get(), name.toUtf8().constData());
        archive_entry_set_filetype(entry.get(), AE_IFREG);
        archive_entry_set_perm(entry.get(), FileMode);
        archive_entry_set_mtime(entry.get(), QDateTime::currentSecsSinceEpoch(), 0);
        archive_entry_set_size(entry.get(), size);
        return archive_write_header(m_writer.get(), entry.get()) == ARCHIVE_OK ? Reason() : failure();
    }
    Reason add(const QByteArray& block) {
        const la_ssize_t written =
            archive_write_data(m_writer.get(), block.constData(), size_t(block.size()));
        return written == block.size() ? Reason() : failure();
    }
    Reason end() { return archive_write_close(m_writer.get()) == ARCHIVE_OK ? Reason() : failure(); }

private:
    Reason failure() const {
        const int error = archive_errno(m_writer.get());
        return systemFailure(m_path, error ? error : EIO);
    }

    QString m_path;
    std::unique_ptr<archive, Close> m_writer;
};

Reason fill(Writer* writer, const OfflineList& list, const QString& directory,
            const std::atomic_bool& cancelled) {
    const QByteArray text = list.toJson();
    Reason failure = writer->begin(OfflineArchive::ListEntry, text.size());
    if (failure.isEmpty())
        failure = writer->add(text);
    for (auto file = list.files.begin(); file != list.files.end() && failure.isEmpty(); ++file) {
        failure = writer->begin(OfflineArchive::FilesPrefix + file.key(), file->size);
        OfflineList::File now;
        if (failure.isEmpty())
            failure = measureFile(directory + '/' + file.key(), &now, cancelled,
                                  [writer](const QByteArray& block) { return writer->add(block); });
        // Another request may have fetched it anew meanwhile.
        if (failure.isEmpty() && (now.size != file->size || now.sha256 != file->sha256))
            failure = Reason(Reason::OtherChecksum, {file.key(), directory});
    }
    return failure.isEmpty() ? writer->end() : failure;
}

/// `path` is the name in reasons.
Reason writeNew(const QString& unfinished, const QString& path, const OfflineList& list,
                const QString& directory, const std::atomic_bool& cancelled) {
    const Fenk::OwnedFd fd(::open(QFile::encodeName(unfinished).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, FileMode));
    if (!fd.isValid())
        return systemFailure(path, errno);
    Writer writer(fd.get(), path);
    const Reason failure = fill(&writer, list, directory, cancelled);
    if (!failure.isEmpty())
        return failure;
    return ::fsync(fd.get()) == 0 ? Reason() : systemFailure(path, errno);
}

}  // namespace

QMap<QString, Reason> OfflineArchive::measure(OfflineList* list, const QString& directory,
                                              const std::atomic_bool& cancelled) {
    const auto pass = [](const QByteArray&) { return Reason(); };
    QMap<QString, Reason> failures, ofFiles;
    for (auto file = list->files.begin(); file != list->files.end(); ++file) {
        *file = {};
        const Reason failure = measureFile(directory + '/' + file.key(), &*file, cancelled, pass);
        if (!failure.isEmpty())
            ofFiles.insert(file.key(), failure);
    }
    QMap<QString, OfflineList::File> kept;
    for (const QString& component : list->components.keys()) {
        Reason failure;
        for (const QString& file : list->components.value(component))
            failure += ofFiles.value(file);
        if (!failure.isEmpty()) {
            failures.insert(component, failure);
            list->components.remove(component);
            continue;
        }
        for (const QString& file : list->components.value(component))
            kept.insert(file, list->files.value(file));
    }
    list->files = kept;
    return failures;
}

Reason OfflineArchive::write(const QString& path, const OfflineList& list, const QString& directory,
                             const QString& record, const std::atomic_bool& cancelled) {
    if (list.files.size() > OfflineList::MaximumFiles || list.toJson().size() > OfflineList::MaximumBytes)
        return Reason::ExportTooLarge;
    const QFileInfo target(path);
    if (target.exists() || target.isSymLink())
        return systemFailure(path, EEXIST);
    const QString unfinished = target.path() + "/." + target.fileName() + Suffix;
    QString error;
    if (!AtomicFile::replace(record, unfinished.toUtf8(), &error))
        return Reason(Reason::CannotWrite, {record, error});
    QFile::remove(unfinished);
    Reason failure = writeNew(unfinished, path, list, directory, cancelled);
    error = failure.isEmpty() ? WorkingDirectory::moveInto(unfinished, path) : QString();
    if (!error.isEmpty()) {
        qWarning().noquote() << error;
        failure = systemFailure(path, QFileInfo::exists(path) ? EEXIST : EIO);
    }
    if (!failure.isEmpty())
        QFile::remove(unfinished);
    QFile::remove(record);
    return failure;
}

void OfflineArchive::removeUnfinished(const QString& record) {
    const QString path =
        QString::fromUtf8(Fenk::RegularFile::read(record, MaximumPath).value_or(QByteArray()));
    const QFileInfo unfinished(path);
    if (unfinished.isAbsolute() && unfinished.fileName().startsWith('.') && path.endsWith(Suffix) &&
        unfinished.isFile() && !unfinished.isSymLink()) {
        qWarning() << "an earlier run of the service was interrupted; removing what it left:" << path;
        QFile::remove(path);
    }
    QFile::remove(record);
}
