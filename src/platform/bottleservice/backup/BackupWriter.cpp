#include "bottleservice/backup/BackupWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStorageInfo>
#include <QThread>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "fenk/system/RegularFile.h"

using namespace BackupFile;

namespace {

const char Suffix[] = ".cellarix-new";
constexpr int MaximumThreads = 4;
constexpr qint64 BestRatio = 20;  // hardly anything becomes smaller than this part of it
constexpr int Mode = 0644;

QString systemFault(int code) {
    return QString::fromLocal8Bit(strerror(code));
}

Reason changed() {
    return Reason(Reason::BottleChanged);
}

}  // namespace

QString BackupWriter::temporaryPathOf(const QString& target) {
    const QFileInfo info(target);
    return info.path() + "/." + info.fileName() + Suffix;
}

BackupWriter::BackupWriter(const QString& target)
    : m_target(target), m_temporary(temporaryPathOf(target)), m_block(BlockBytes, Qt::Uninitialized) {}

BackupWriter::~BackupWriter() {
    if (m_file.isValid())
        ::unlink(QFile::encodeName(m_temporary).constData());
}

Reason BackupWriter::check(const QString& target, qint64 bytes) {
    const QFileInfo info(target);
    if (!target.startsWith('/') || info.fileName().isEmpty() || target.contains(QChar(0)) ||
        info.isSymLink() || (info.exists() && !info.isFile()))
        return Reason(Reason::NoOrdinaryFile, {target});
    if (!QFileInfo(info.path()).isDir())
        return Reason(Reason::CannotWrite, {target, systemFault(ENOENT)});
    const qint64 room = QStorageInfo(info.path()).bytesAvailable();
    const qint64 needed = bytes / BestRatio;
    if (room >= 0 && room < needed)
        return Reason(Reason::TooLittleRoom,
                      {QLocale::c().formattedDataSize(needed), QLocale::c().formattedDataSize(room)});
    return {};
}

Reason BackupWriter::writeFault() const {
    const int code = archive_errno(m_archive.get());
    if (code == ENOSPC || code == EDQUOT)
        return Reason(Reason::DiskFull, {QFileInfo(m_target).path()});
    return Reason(Reason::CannotWrite, {m_target, faultOf(m_archive.get())});
}

Reason BackupWriter::write(const BackupList& list, const QString& bottlePath, const QString& templatePath,
                           Progress* progress) {
    // What a restoration would refuse is no backup.
    const QByteArray text = list.toJson();
    QString error;
    if (!BackupList::parse(text, &error))
        return Reason(Reason::BottleUnfit, {error});
    const QByteArray path = QFile::encodeName(m_temporary);
    ::unlink(path.constData());
    m_file.reset(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!m_file.isValid())
        return Reason(Reason::CannotWrite, {m_target, systemFault(errno)});
    // What programs keep is for nobody else, unless an older backup of this name was.
    struct stat older = {};
    if (::lstat(QFile::encodeName(m_target).constData(), &older) == 0 && S_ISREG(older.st_mode))
        ::fchmod(m_file.get(), older.st_mode & 0777);
    m_archive.reset(archive_write_new());
    archive* handle = m_archive.get();
    archive_write_set_format_gnutar(handle);
    archive_write_add_filter_zstd(handle);
    // A libarchive without threads writes the same with one.
    archive_write_set_filter_option(
        handle, "zstd", "threads",
        QByteArray::number(std::clamp(QThread::idealThreadCount(), 1, MaximumThreads)).constData());
    archive_write_set_bytes_per_block(handle, BlockBytes);
    archive_write_set_bytes_in_last_block(handle, 1);
    if (archive_write_open_fd(handle, m_file.get()) != ARCHIVE_OK)
        return writeFault();
    Reason fault = addText(ListEntry, text);
    for (const QString& name : templatePath.isEmpty() ? QStringList() : registries()) {
        const auto registry = Fenk::RegularFile::read(templatePath + '/' + name, MaximumRegistryBytes);
        if (fault.isEmpty())
            fault = addText(TemplatePrefix + name.toUtf8(), registry.value_or(QByteArray()));
    }
    for (const BackupEntry& entry : list.entries) {
        if (fault.isEmpty())
            fault = addEntry(entry, bottlePath, progress);
    }
    if (fault.isEmpty())
        fault = addText(ChecksumsEntry, m_checksums);
    if (fault.isEmpty() && archive_write_close(handle) != ARCHIVE_OK)
        fault = writeFault();
    return fault;
}

Reason BackupWriter::begin(const QByteArray& name, unsigned type, qint64 size, const BackupEntry& entry) {
    const Entry header(archive_entry_new());
    archive_entry_set_pathname(header.get(), name.constData());
    archive_entry_set_filetype(header.get(), type);
    archive_entry_set_size(header.get(), size);
    archive_entry_set_perm(header.get(), type == AE_IFREG ? mode_t(entry.mode | 0400) : mode_t(0755));
    archive_entry_set_mtime(header.get(), time_t(entry.modifiedMs / 1000), 0);
    if (type == AE_IFLNK)
        archive_entry_set_symlink(header.get(), entry.target.constData());
    return archive_write_header(m_archive.get(), header.get()) < ARCHIVE_WARN ? writeFault() : Reason();
}

Reason BackupWriter::addText(const QByteArray& name, const QByteArray& content) {
    BackupEntry entry;
    entry.mode = Mode;
    const Reason fault = begin(name, AE_IFREG, content.size(), entry);
    if (!fault.isEmpty())
        return fault;
    const la_ssize_t count = archive_write_data(m_archive.get(), content.constData(), size_t(content.size()));
    return count == content.size() ? Reason() : writeFault();
}

Reason BackupWriter::addEntry(const BackupEntry& entry, const QString& bottlePath, Progress* progress) {
    if (progress->cancelled)
        return Reason::Cancelled;
    const QByteArray name = BottlePrefix + entry.path;
    if (entry.type == BackupEntry::Type::Directory)
        return begin(name + '/', AE_IFDIR, 0, entry);
    if (entry.type == BackupEntry::Type::Link)
        return begin(name, AE_IFLNK, 0, entry);
    const QByteArray path = QFile::encodeName(bottlePath) + '/' + entry.path;
    // A link here leads to a file of Wine, as the survey has found.
    const Fenk::OwnedFd file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.isValid())
        return Reason(Reason::CannotRead, {QString::fromUtf8(path), systemFault(errno)});
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size != entry.size)
        return changed();
    const Reason fault = begin(name, AE_IFREG, entry.size, entry);
    return fault.isEmpty() ? addContent(file.get(), entry, progress) : fault;
}

Reason BackupWriter::addContent(int fd, const BackupEntry& entry, Progress* progress) {
    Checksum checksum;
    for (qint64 left = entry.size; left > 0;) {
        if (progress->cancelled)
            return Reason::Cancelled;
        const ssize_t count = ::read(fd, m_block.data(), size_t(std::min<qint64>(left, m_block.size())));
        if (count < 0)
            return Reason(Reason::CannotRead, {QString::fromUtf8(entry.path), systemFault(errno)});
        if (count == 0)
            return changed();
        checksum.add(m_block.constData(), size_t(count));
        if (archive_write_data(m_archive.get(), m_block.constData(), size_t(count)) != count)
            return writeFault();
        left -= count;
        progress->done += count;
    }
    m_checksums += checksumLine(checksum.hex(), BottlePrefix + entry.path);
    return {};
}

Reason BackupWriter::place() {
    if (::fsync(m_file.get()) != 0)
        return Reason::ofWriting(m_target, errno == ENOSPC, systemFault(errno));
    if (::rename(QFile::encodeName(m_temporary).constData(), QFile::encodeName(m_target).constData()) != 0)
        return Reason(Reason::CannotWrite, {m_target, systemFault(errno)});
    m_file.reset();
    const Fenk::OwnedFd directory(
        ::open(QFile::encodeName(QFileInfo(m_target).path()).constData(), O_RDONLY | O_CLOEXEC));
    if (directory.isValid())
        ::fsync(directory.get());
    return {};
}
