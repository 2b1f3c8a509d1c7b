#include "bottleservice/backup/BackupReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "fenk/system/OwnedFd.h"

using namespace BackupFile;
using Type = BackupEntry::Type;

namespace {

unsigned typeOf(const BackupEntry& entry) {
    return entry.type == Type::File ? AE_IFREG : entry.type == Type::Link ? AE_IFLNK : AE_IFDIR;
}

Reason cannotWrite(const QByteArray& path) {
    const QString shown = QString::fromUtf8(path);
    return errno == ENOSPC || errno == EDQUOT
               ? Reason(Reason::DiskFull, {QFileInfo(shown).path()})
               : Reason(Reason::CannotWrite, {shown, QString::fromLocal8Bit(strerror(errno))});
}

bool writeAll(int fd, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(fd, data, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        data += count;
        size -= size_t(count);
    }
    return true;
}

/// The same for a file that has holes: what is zero is passed over.
bool writeAround(int fd, const char* data, size_t size) {
    constexpr size_t PieceBytes = 64 * 1024;
    static const QByteArray zeros(PieceBytes, 0);
    for (size_t done = 0; done < size;) {
        const size_t piece = std::min(PieceBytes, size - done);
        const bool isHole = std::memcmp(data + done, zeros.constData(), piece) == 0;
        if (isHole ? ::lseek(fd, off_t(piece), SEEK_CUR) < 0 : !writeAll(fd, data + done, piece))
            return false;
        done += piece;
    }
    return true;
}

/// What a file system cannot keep is left out.
void setAttributes(int fd, const BackupEntry& entry) {
    if (!entry.attributes.isEmpty())
        ::fsetxattr(fd, "user.DOSATTRIB", entry.attributes.constData(), size_t(entry.attributes.size()), 0);
}

}  // namespace

BackupReader::BackupReader(const QString& path) : m_path(path) {}

Reason BackupReader::broken(const QString& detail) const {
    // The detail is for the log.
    return Reason(Reason::BadBackup, {QFileInfo(m_path).fileName(), detail});
}

Reason BackupReader::open() {
    const QFileInfo info(m_path);
    if (!m_path.startsWith('/') || !info.isFile() || !info.isReadable())
        return Reason(Reason::NoOrdinaryFile, {m_path});
    m_archive.reset(archive_read_new());
    archive_read_support_filter_zstd(m_archive.get());
    archive_read_support_format_tar(m_archive.get());
    if (archive_read_open_filename(m_archive.get(), QFile::encodeName(m_path).constData(), BlockBytes) !=
        ARCHIVE_OK)
        return broken("it is no archive of this kind");
    return {};
}

archive_entry* BackupReader::next(Reason* failure) {
    archive_entry* entry = nullptr;
    const int status = archive_read_next_header(m_archive.get(), &entry);
    if (status == ARCHIVE_OK)
        return entry;
    if (status != ARCHIVE_EOF)
        *failure = broken(faultOf(m_archive.get()));
    return nullptr;
}

std::optional<BackupList> BackupReader::readList(Reason* failure) {
    *failure = open();
    if (!failure->isEmpty())
        return std::nullopt;
    archive_entry* entry = nullptr;
    const int status = archive_read_next_header(m_archive.get(), &entry);
    if (status != ARCHIVE_OK || qstrcmp(archive_entry_pathname(entry), ListEntry) != 0) {
        *failure = broken("it is no archive of this kind");
        return std::nullopt;
    }
    const auto text = readText(entry, BackupList::MaximumBytes, failure);
    QString error;
    auto list = text ? BackupList::parse(*text, &error) : std::nullopt;
    if (failure->isEmpty() && !list)
        *failure = error == BackupList::NewerFormat
                       ? Reason(Reason::NewerBackup, {QFileInfo(m_path).fileName()})
                       : broken(error);
    return list;
}

std::optional<QByteArray> BackupReader::readText(archive_entry* entry, qint64 maximum, Reason* failure) {
    const qint64 size = archive_entry_size(entry);
    if (archive_entry_filetype(entry) != AE_IFREG || archive_entry_hardlink(entry) || size < 0 ||
        size > maximum) {
        *failure = broken("it has something else than was expected");
        return std::nullopt;
    }
    // Grows with what is really there, since the size may be a lie.
    QByteArray text;
    QByteArray block(BlockBytes, Qt::Uninitialized);
    for (;;) {
        const la_ssize_t count = archive_read_data(m_archive.get(), block.data(), size_t(block.size()));
        if (count < 0 || text.size() + count > maximum)
            *failure = broken(faultOf(m_archive.get()));
        if (count <= 0 || !failure->isEmpty())
            break;
        text.append(block.constData(), int(count));
    }
    if (!failure->isEmpty())
        return std::nullopt;
    return text;
}

Reason BackupReader::unpack(const BackupList& list, const QString& directory,
                            const QString& templateDirectory, Progress* progress) {
    Reason failure;
    archive_entry* header = next(&failure);
    for (const QString& name : registries()) {
        if (!header || qstrcmp(archive_entry_pathname(header), TemplatePrefix + name.toUtf8()) != 0)
            continue;
        const auto text = readText(header, MaximumRegistryBytes, &failure);
        QFile file(templateDirectory + '/' + name);
        if (text && (!file.open(QIODevice::WriteOnly) || file.write(*text) != text->size() || !file.flush()))
            failure = cannotWrite(QFile::encodeName(file.fileName()));
        if (failure.isEmpty())
            header = next(&failure);
    }
    const QByteArray root = QFile::encodeName(directory) + '/';
    for (const BackupEntry& entry : list.entries) {
        if (failure.isEmpty() && progress->cancelled)
            failure = Reason::Cancelled;
        if (failure.isEmpty())
            failure = unpackEntry(header, entry, root + entry.path, progress);
        if (failure.isEmpty())
            header = next(&failure);
        if (!failure.isEmpty())
            return failure;
    }
    if (failure.isEmpty() && (!header || qstrcmp(archive_entry_pathname(header), ChecksumsEntry) != 0))
        return broken("its end is missing");
    const auto checksums = failure.isEmpty() ? readText(header, m_checksums.size(), &failure) : std::nullopt;
    if (failure.isEmpty() && *checksums != m_checksums)
        return broken("a file has another checksum than it should have");
    return failure;
}

Reason BackupReader::unpackEntry(archive_entry* header, const BackupEntry& entry, const QByteArray& path,
                                 Progress* progress) {
    if (!header)
        return broken("files are missing");
    QByteArray name = archive_entry_pathname(header);
    if (entry.type == Type::Directory && name.endsWith('/'))
        name.chop(1);
    if (name != BottlePrefix + entry.path || archive_entry_filetype(header) != typeOf(entry) ||
        archive_entry_hardlink(header) || archive_entry_size(header) != entry.size ||
        (entry.type == Type::Link && archive_entry_symlink(header) != entry.target))
        return broken("its files are not those of its list");
    switch (entry.type) {
        case Type::Directory: {
            if (::mkdir(path.constData(), 0777) != 0)
                return cannotWrite(path);
            const Fenk::OwnedFd made(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            setAttributes(made.get(), entry);
            return {};
        }
        case Type::Link:
            // Nothing is written below a link: the list has no such path.
            return ::symlink(entry.target.constData(), path.constData()) == 0 ? Reason() : cannotWrite(path);
        case Type::File:
            break;
    }
    return unpackFile(entry, path, progress);
}

Reason BackupReader::unpackFile(const BackupEntry& entry, const QByteArray& path, Progress* progress) {
    const Fenk::OwnedFd file(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.isValid())
        return cannotWrite(path);
    Checksum checksum;
    qint64 written = 0;
    for (;;) {
        const void* block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        const int status = archive_read_data_block(m_archive.get(), &block, &size, &offset);
        if (progress->cancelled)
            return Reason::Cancelled;
        if (status == ARCHIVE_EOF)
            break;
        if (status != ARCHIVE_OK)
            return broken(faultOf(m_archive.get()));
        if (offset != written || qint64(size) > entry.size - written)
            return broken("a file has another size than it should have");
        checksum.add(block, size);
        const auto write = entry.holes > 0 ? &writeAround : &writeAll;
        if (!write(file.get(), static_cast<const char*>(block), size))
            return cannotWrite(path);
        written += qint64(size);
        progress->done += qint64(size);
    }
    if (written != entry.size)
        return broken("a file has another size than it should have");
    if (entry.holes > 0 && ::ftruncate(file.get(), entry.size) != 0)
        return cannotWrite(path);
    m_checksums += checksumLine(checksum.hex(), BottlePrefix + entry.path);
    setAttributes(file.get(), entry);
    const struct timespec time = {time_t(entry.modifiedMs / 1000), (entry.modifiedMs % 1000) * 1000000};
    const struct timespec times[] = {time, time};
    ::futimens(file.get(), times);
    ::fchmod(file.get(), mode_t(entry.mode | 0400));
    return {};
}
