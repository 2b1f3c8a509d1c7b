#include "bottleservice/components/OfflineArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <memory>

#include "bottleservice/components/SourceFile.h"
#include "fenk/system/RegularFile.h"

namespace OfflineArchive {

const char ListEntry[] = "components.json";
const char FilesPrefix[] = "files/";

namespace {

constexpr int BlockBytes = 256 * 1024;

struct Close {
    void operator()(archive* handle) const { archive_read_free(handle); }
};

/// One pass over an archive. After a failure nothing more may be read.
class Reader {
public:
    Reader(QFile* file, const QString& name) : m_file(file), m_name(name), m_reader(archive_read_new()) {
        archive_read_support_format_tar(m_reader.get());
        ::lseek(file->handle(), 0, SEEK_SET);
        if (archive_read_open_fd(m_reader.get(), file->handle(), BlockBytes) != ARCHIVE_OK)
            m_failure = bad(archiveFault());
    }

    Reason list(OfflineList* list) {
        QString fault;
        if (!next() || nameOf(m_entry) != ListEntry)
            return m_failure.isEmpty() ? bad("it has no list of components") : m_failure;
        QByteArray text(OfflineList::MaximumBytes + 1, Qt::Uninitialized);
        const la_ssize_t size = archive_read_data(m_reader.get(), text.data(), size_t(text.size()));
        if (size < 0)
            return bad(archiveFault());
        const auto read = OfflineList::parse(text.left(int(size)), &fault);
        if (!read)
            return bad(fault);
        // Nothing is compressed, so that this also limits what is written to the disk.
        if (read->bytes() > m_file->size())
            return bad("it is shorter than its list says");
        *list = *read;
        return {};
    }

    /// Unpacks what stands behind the list.
    Reason files(const OfflineList& list, const QString& directory, const std::atomic_bool& cancelled) {
        QSet<QString> seen;
        while (next()) {
            const QString entry = nameOf(m_entry);
            const QString name = entry.mid(int(qstrlen(FilesPrefix)));
            const auto listed = list.files.constFind(name);
            if (!entry.startsWith(FilesPrefix) || listed == list.files.constEnd())
                return bad("it has an entry that is not in its list");
            if (seen.contains(name))
                return bad("it has an entry twice");
            seen += name;
            const Reason failure = unpack(*listed, name, directory, cancelled);
            if (!failure.isEmpty())
                return failure;
        }
        if (m_failure.isEmpty() && seen.size() != list.files.size())
            return bad("a file of its list is missing");
        return m_failure;
    }

private:
    static QString nameOf(archive_entry* entry) { return QString::fromUtf8(archive_entry_pathname(entry)); }
    QString archiveFault() const { return QString::fromUtf8(archive_error_string(m_reader.get())); }
    Reason bad(const QString& detail) const {
        qWarning() << m_name << "cannot be used:" << detail;
        return Reason(Reason::BadExport, {m_name});
    }

    /// False at the end, and on a failure.
    bool next() {
        if (!m_failure.isEmpty())
            return false;
        const int status = archive_read_next_header(m_reader.get(), &m_entry);
        if (status == ARCHIVE_EOF)
            return false;
        if (status != ARCHIVE_OK)
            m_failure = bad(archiveFault());
        else if (archive_entry_filetype(m_entry) != AE_IFREG || archive_entry_hardlink(m_entry) ||
                 archive_entry_sparse_count(m_entry) > 0)
            m_failure = bad("it has an entry that is no ordinary file");
        return m_failure.isEmpty();
    }

    Reason unpack(const OfflineList::File& listed, const QString& name, const QString& directory,
                  const std::atomic_bool& cancelled) {
        QFile target(directory + '/' + name);
        if (!target.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return SourceFile::writeFailure(target);
        QCryptographicHash hash(QCryptographicHash::Sha256);
        QByteArray block(BlockBytes, Qt::Uninitialized);
        qint64 size = 0;
        for (;;) {
            const la_ssize_t count = archive_read_data(m_reader.get(), block.data(), size_t(block.size()));
            if (cancelled)
                return Reason::Cancelled;
            if (count < 0)
                return bad(archiveFault());
            if (count == 0)
                break;
            size += count;
            if (size > listed.size)
                break;
            hash.addData(block.constData(), int(count));
            if (target.write(block.constData(), count) != count)
                return SourceFile::writeFailure(target);
        }
        if (size != listed.size || hash.result().toHex() != listed.sha256)
            return bad(QString("%1 is not as its list says").arg(name));
        return target.flush() ? Reason() : SourceFile::writeFailure(target);
    }

    QFile* m_file;
    QString m_name;
    std::unique_ptr<archive, Close> m_reader;
    archive_entry* m_entry = nullptr;  ///< belongs to the reader
    Reason m_failure;
};

Reason opened(QFile* file, const QString& path) {
    if (Fenk::RegularFile::open(*file, path, Fenk::RegularFile::Links::Followed))
        return {};
    return Reason(Reason::NoOrdinaryFile, {path});
}

}  // namespace

Reason readList(QFile* file, const QString& name, OfflineList* list) {
    return Reader(file, name).list(list);
}

Reason readList(const QString& path, OfflineList* list) {
    QFile file;
    const Reason failure = opened(&file, path);
    return failure.isEmpty() ? readList(&file, QFileInfo(path).fileName(), list) : failure;
}

Reason unpack(const QString& path, const QString& directory, OfflineList* list,
              const std::atomic_bool& cancelled) {
    QFile file;
    Reason failure = opened(&file, path);
    if (!failure.isEmpty())
        return failure;
    Reader reader(&file, QFileInfo(path).fileName());
    failure = reader.list(list);
    return failure.isEmpty() ? reader.files(*list, directory, cancelled) : failure;
}

}  // namespace OfflineArchive
