#include "bottleservice/portable/PortableArchive.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <cerrno>
#include <limits>

#include "bottleservice/portable/ArchiveNames.h"
#include "fenk/system/OwnedFd.h"

using BackupFile::faultOf;

namespace {

constexpr int HeaderBytes = 4096;
constexpr int BlockBytes = 64 * 1024;
constexpr int MaximumRatio = 200;  ///< of what is larger than FreeBytes
constexpr qint64 FreeBytes = 1024LL * 1024 * 1024;

QByteArray rawNameOf(archive_entry* entry) {
    const char* name = archive_entry_pathname(entry);
    return name ? name : archive_entry_pathname_utf8(entry);
}

}  // namespace

Reason PortableArchive::broken(const QString& detail) const {
    return Reason(Reason::BadArchive, {QFileInfo(m_path).fileName(), detail});
}

BackupFile::Handle PortableArchive::opened(Reason* failure) const {
    BackupFile::Handle reader(archive_read_new());
    archive_read_support_format_zip_seekable(reader.get());
    if (archive_read_open_filename(reader.get(), QFile::encodeName(m_path).constData(), BlockBytes) !=
        ARCHIVE_OK)
        *failure = broken(faultOf(reader.get()));
    return reader;
}

Reason PortableArchive::survey(const std::atomic_bool& cancelled) {
    Reason failure;
    const BackupFile::Handle reader = opened(&failure);
    if (!failure.isEmpty())
        return failure;
    archive_entry* entry = nullptr;
    int status = ARCHIVE_OK;
    while ((status = archive_read_next_header(reader.get(), &entry)) >= ARCHIVE_WARN &&
           status != ARCHIVE_EOF) {
        if (cancelled)
            return Reason::Cancelled;
        failure = addItem(reader.get(), entry);
        if (!failure.isEmpty())
            return failure;
    }
    return status == ARCHIVE_EOF ? decodeNames() : broken(faultOf(reader.get()));
}

Reason PortableArchive::addItem(archive* reader, archive_entry* entry) {
    if (archive_entry_is_encrypted(entry))
        return Reason(Reason::ProtectedArchive, {QFileInfo(m_path).fileName()});
    const auto type = archive_entry_filetype(entry);
    const qint64 bytes = type == AE_IFREG ? archive_entry_size(entry) : 0;
    if ((type != AE_IFREG && type != AE_IFDIR) || archive_entry_hardlink(entry))
        return broken("it holds something that is neither a file nor a folder");
    if (++m_entries > MaximumEntries)
        return broken("there are too many entries");
    if (bytes < 0 || bytes > std::numeric_limits<qint64>::max() - m_bytes)
        return broken("it is damaged");
    const QByteArray name = rawNameOf(entry);
    noteFile(QString::fromLatin1(name), bytes);
    if (m_bytes > FreeBytes && m_bytes / MaximumRatio > QFileInfo(m_path).size())
        return broken("it unpacks to more than it may");
    if (isExecutable(QString::fromLatin1(name))) {
        QByteArray head(HeaderBytes, 0);
        head.truncate(int(std::max<la_ssize_t>(archive_read_data(reader, head.data(), HeaderBytes), 0)));
        noteProgram(QString::fromLatin1(name).replace('\\', '/'), PeFile::parse(head, bytes));
    }
    m_items += Item{name, bytes, type == AE_IFDIR};
    return {};
}

Reason PortableArchive::decodeNames() {
    QVector<QByteArray> raw;
    for (const Item& item : qAsConst(m_items))
        raw += item.rawName;
    m_names = ArchiveNames::decoded(raw, QLocale::system());
    QSet<QString> known;
    for (int i = 0; i < m_names.size(); ++i) {
        QString& name = m_names[i];
        if (m_items[i].isDirectory && name.endsWith('/'))
            name.chop(1);
        if (!ArchiveNames::isInside(name))
            return broken(name.left(200) + ": its name leads out of the archive");
        if (known.contains(name) && !m_items[i].isDirectory)
            return broken(name.left(200) + ": its name comes twice");
        known.insert(name);
    }
    return checkPrograms();
}

Reason PortableArchive::copyTo(const QString& directory, BackupFile::Progress* progress) {
    Reason failure;
    const BackupFile::Handle reader = opened(&failure);
    for (int i = 0; failure.isEmpty() && i < m_items.size(); ++i) {
        const Item& item = m_items[i];
        const QString path = directory + '/' + m_names[i];
        const QString parent = item.isDirectory ? path : QFileInfo(path).path();
        archive_entry* entry = nullptr;
        if (progress->cancelled)
            failure = Reason::Cancelled;
        else if (archive_read_next_header(reader.get(), &entry) < ARCHIVE_WARN || !entry ||
                 rawNameOf(entry) != item.rawName)
            failure = broken("it was changed meanwhile");
        else if (!QDir().mkpath(parent))
            failure = cannotWrite(parent, errno);
        else if (!item.isDirectory)
            failure = unpack(reader.get(), entry, item, path, progress);
    }
    return failure;
}

Reason PortableArchive::unpack(archive* reader, archive_entry* entry, const Item& item, const QString& path,
                               BackupFile::Progress* progress) const {
    const Fenk::OwnedFd file(::open(QFile::encodeName(path).constData(),
                                    O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.isValid())
        return cannotWrite(path, errno);
    QByteArray block(BackupFile::BlockBytes, Qt::Uninitialized);
    qint64 written = 0;
    for (;;) {
        const la_ssize_t count = archive_read_data(reader, block.data(), size_t(block.size()));
        if (progress->cancelled)
            return Reason::Cancelled;
        if (count < 0)
            return broken(faultOf(reader));
        if (count == 0)
            break;
        if (count > item.bytes - written)
            return broken("a file has another size than it should have");
        for (qint64 done = 0; done < count;) {
            const ssize_t part = ::write(file.get(), block.constData() + done, size_t(count - done));
            if (part < 0 && errno != EINTR)
                return cannotWrite(path, errno);
            done += std::max<ssize_t>(part, 0);
        }
        written += count;
        progress->done += count;
    }
    if (written != item.bytes)
        return broken("a file has another size than it should have");
    const struct timespec time = {archive_entry_mtime(entry), 0};
    const struct timespec times[] = {time, time};
    ::futimens(file.get(), times);
    return {};
}
