#include "bottleservice/components/Archive.h"

#include <archive.h>
#include <archive_entry.h>

#include <unistd.h>
#include <cerrno>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <memory>

namespace Archive {

namespace {

constexpr qint64 MaximumBytes = 24LL * 1024 * 1024 * 1024;
constexpr int MaximumEntries = 300000;
constexpr int MaximumDepth = 2;
constexpr int BlockBytes = 64 * 1024;
const char Cancelled[] = "the work was cancelled";

struct Close {
    void operator()(archive* handle) const {
        archive_read_free(handle);  // frees writers as well
    }
};
using Handle = std::unique_ptr<archive, Close>;

QString fault(archive* handle) {
    return QString::fromUtf8(archive_error_string(handle));
}

Reason broken(const QString& path, const QString& detail) {
    return Reason(Reason::BadArchive, {QFileInfo(path).fileName(), detail});
}

Handle opened(const QString& path, Reason* error) {
    Handle reader(archive_read_new());
    archive_read_support_filter_all(reader.get());
    archive_read_support_format_all(reader.get());
    if (archive_read_open_filename(reader.get(), QFile::encodeName(path).constData(), BlockBytes) !=
        ARCHIVE_OK)
        *error = broken(path, fault(reader.get()));
    return reader;
}

QString nameOf(archive_entry* entry) {
    const char* name = archive_entry_pathname_utf8(entry);
    if (!name)
        name = archive_entry_pathname(entry);
    return QString::fromUtf8(name).replace('\\', '/');
}

/// Whether a link in a real directory at that depth stays in the archive. ".." is not allowed after a name,
/// which may itself be a link.
bool staysInside(const QString& target, int depth) {
    bool hasName = false;
    for (const QString& part : target.split('/', Qt::SkipEmptyParts)) {
        if (part == ".." && (hasName || --depth < 0))
            return false;
        hasName = hasName || (part != ".." && part != ".");
    }
    return !target.isEmpty() && !target.startsWith('/');
}

bool isInside(const QString& name) {
    return !name.isEmpty() && !name.startsWith('/') && !name.contains(QChar(0)) &&
           !name.split('/').contains("..");
}

/// Returns why the entry must not be unpacked, empty if it may.
QString objection(archive_entry* entry, const QString& name) {
    if (!isInside(name))
        return "its name leads out of the archive";
    if (const char* link = archive_entry_hardlink(entry)) {
        if (!isInside(QString::fromUtf8(link)))
            return "it is a link that leads out of the archive";
    } else if (archive_entry_filetype(entry) == AE_IFLNK) {
        const int depth = name.split('/', Qt::SkipEmptyParts).size() - 1;
        if (!staysInside(QString::fromUtf8(archive_entry_symlink(entry)), depth))
            return "it is a link that leads out of the archive";
    } else if (archive_entry_filetype(entry) != AE_IFREG && archive_entry_filetype(entry) != AE_IFDIR) {
        return "it is neither a file nor a directory";
    }
    return {};
}

struct Budget {
    qint64 bytes = MaximumBytes;
    int entries = MaximumEntries;
    bool isDiskFull = false;  ///< what failed, failed for that
    bool take(qint64 count) { return (bytes -= count) >= 0; }
    bool takeEntry() { return --entries >= 0; }
};

/// The error of a writer; also records whether the disk was full.
QString writeFault(archive* writer, Budget* budget) {
    budget->isDiskFull = archive_errno(writer) == ENOSPC || archive_errno(writer) == EDQUOT;
    return fault(writer);
}

Reason reasonOf(const Budget& budget, const QString& path, const QString& detail) {
    return budget.isDiskFull ? Reason(Reason::NoRoom, {QFileInfo(path).fileName()}) : broken(path, detail);
}

QString copyData(archive* reader, archive* writer, Budget* budget, const std::atomic_bool& cancelled) {
    for (;;) {
        const void* block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        const int status = archive_read_data_block(reader, &block, &size, &offset);
        if (status == ARCHIVE_EOF)
            return {};
        if (cancelled)
            return Cancelled;
        if (status < ARCHIVE_WARN)
            return fault(reader);
        if (!budget->take(qint64(size)))
            return "it unpacks to more than it may";
        if (archive_write_data_block(writer, block, size, offset) < ARCHIVE_WARN)
            return writeFault(writer, budget);
    }
}

QString unpackEntry(archive* reader, archive* writer, archive_entry* entry, const QString& root,
                    Budget* budget, const std::atomic_bool& cancelled) {
    const QString name = nameOf(entry);
    const QString bad = objection(entry, name);
    if (!bad.isEmpty())
        return bad;
    archive_entry_set_pathname(entry, QFile::encodeName(root + '/' + name).constData());
    if (const char* link = archive_entry_hardlink(entry))
        archive_entry_set_hardlink(entry,
                                   QFile::encodeName(root + '/' + QString::fromUtf8(link)).constData());
    // No foreign owners or special bits, and always writable, so that it can be removed again.
    archive_entry_set_perm(entry, (archive_entry_perm(entry) & 0755) | 0600 |
                                      (archive_entry_filetype(entry) == AE_IFDIR ? 0700 : 0));
    if (archive_write_header(writer, entry) < ARCHIVE_WARN)
        return writeFault(writer, budget);
    const QString error = copyData(reader, writer, budget, cancelled);
    if (error.isEmpty() && archive_write_finish_entry(writer) < ARCHIVE_WARN)
        return writeFault(writer, budget);
    return error;
}

/// Copies one file to the disk in blocks of limited size.
QString writeTo(archive* reader, const QString& path, Budget* budget, const std::atomic_bool& cancelled) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return QString("cannot write %1: %2").arg(path, file.errorString());
    QByteArray block(BlockBytes, Qt::Uninitialized);
    for (;;) {
        const la_ssize_t count = archive_read_data(reader, block.data(), size_t(block.size()));
        if (cancelled)
            return Cancelled;
        if (count < 0)
            return fault(reader);
        if (count == 0)
            return {};
        if (!budget->take(count))
            return "it unpacks to more than it may";
        if (file.write(block.constData(), count) != count || !file.flush()) {
            budget->isDiskFull = file.error() == QFileDevice::ResourceError;
            return QString("cannot write %1: %2").arg(path, file.errorString());
        }
    }
}

class Extraction {
public:
    Extraction(const QStringList& names, const QString& directory, QStringList* paths,
               const std::atomic_bool& cancelled)
        : m_names(names), m_directory(directory), m_paths(paths), m_cancelled(cancelled) {}

    Reason from(const QString& path, int depth) {
        Reason failure;
        const Handle reader = opened(path, &failure);
        if (!failure.isEmpty())
            return failure;
        archive_entry* entry = nullptr;
        int status = ARCHIVE_OK;
        while ((status = archive_read_next_header(reader.get(), &entry)) >= ARCHIVE_WARN &&
               status != ARCHIVE_EOF) {
            if (m_cancelled)
                return Reason::Cancelled;
            const QString error =
                m_budget.takeEntry() ? take(reader.get(), entry, depth) : QString("it has too many entries");
            if (!error.isEmpty())
                return reasonOf(m_budget, path, error);
        }
        return status == ARCHIVE_EOF ? Reason() : broken(path, fault(reader.get()));
    }

private:
    QString take(archive* reader, archive_entry* entry, int depth) {
        if (archive_entry_filetype(entry) != AE_IFREG)
            return {};
        const QString name = nameOf(entry).section('/', -1);
        const bool isWanted = m_names.contains(name, Qt::CaseInsensitive);
        const bool isProgram = name.endsWith(".exe", Qt::CaseInsensitive);
        const bool isPacked =
            depth < MaximumDepth && (isProgram || name.endsWith(".cab", Qt::CaseInsensitive));
        if (!isWanted && !isPacked)
            return {};
        const QString place = m_directory + '/' + QString::number(++m_count);
        if (!QDir().mkpath(place))
            return QString("cannot make %1").arg(place);
        const QString path = place + '/' + (isWanted ? name.toLower() : QString("inner"));
        QString error = writeTo(reader, path, &m_budget, m_cancelled);
        if (error.isEmpty() && isWanted)
            *m_paths += path;
        if (error.isEmpty() && !isWanted) {
            error = from(path, depth + 1).text();
            QFile::remove(path);
            // Most programs are no archives.
            if (isProgram && !m_cancelled)
                error.clear();
        }
        return error;
    }

    QStringList m_names;
    QString m_directory;
    QStringList* m_paths;
    const std::atomic_bool& m_cancelled;
    Budget m_budget;
    int m_count = 0;
};

}  // namespace

Reason unpack(const QString& archivePath, const QString& directory, const std::atomic_bool& cancelled,
              const QString& omitted) {
    Reason failure;
    const Handle reader = opened(archivePath, &failure);
    if (!failure.isEmpty())
        return failure;
    const Handle writer(archive_write_disk_new());
    // The path of the directory itself is absolute and may contain links of the user.
    const QString root = QFileInfo(directory).canonicalFilePath();
    archive_write_disk_set_options(writer.get(), ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_PERM |
                                                     ARCHIVE_EXTRACT_SECURE_SYMLINKS |
                                                     ARCHIVE_EXTRACT_SECURE_NODOTDOT);
    Budget budget;
    archive_entry* entry = nullptr;
    int status = ARCHIVE_OK;
    while ((status = archive_read_next_header(reader.get(), &entry)) >= ARCHIVE_WARN &&
           status != ARCHIVE_EOF) {
        if (cancelled)
            return Reason::Cancelled;
        const QString name = nameOf(entry);
        if (!omitted.isEmpty() && ('/' + name).contains('/' + omitted + '/'))
            continue;
        const QString error = budget.takeEntry()
                                  ? unpackEntry(reader.get(), writer.get(), entry, root, &budget, cancelled)
                                  : QString("there are too many entries");
        if (!error.isEmpty())
            return reasonOf(budget, archivePath, name.left(200) + ": " + error);
    }
    if (status != ARCHIVE_EOF)
        return broken(archivePath, fault(reader.get()));
    if (archive_write_close(writer.get()) >= ARCHIVE_WARN)
        return {};
    const QString error = writeFault(writer.get(), &budget);
    return reasonOf(budget, archivePath, error);
}

QString leavingLink(const QString& directory) {
    QDirIterator walk(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QByteArray path = QFile::encodeName(walk.next());
        QByteArray target(4096, 0);
        const ssize_t length = ::readlink(path.constData(), target.data(), size_t(target.size()));
        const QString relative = walk.filePath().mid(directory.size() + 1);
        if (length >= 0 && !staysInside(QFile::decodeName(target.left(int(length))), relative.count('/')))
            return QString("It holds a link that leads out of it: %1.").arg(relative.left(200));
    }
    return {};
}

Reason extract(const QString& archivePath, const QStringList& names, const QString& directory,
               QStringList* paths, const std::atomic_bool& cancelled) {
    return Extraction(names, directory, paths, cancelled).from(archivePath, 1);
}

}  // namespace Archive
