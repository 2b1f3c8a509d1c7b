#include "bottleservice/portable/PortableFolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "bottleservice/backup/BackupPath.h"
#include "bottleservice/files/FileTree.h"

namespace fs = std::filesystem;

namespace {

constexpr int MaximumShown = 200;  // of a path that is too long

Reason cannotRead(const QByteArray& path, int error) {
    return Reason(Reason::CannotRead, {QString::fromUtf8(path), QString::fromLocal8Bit(strerror(error))});
}

}  // namespace

Reason PortableFolder::survey(const std::atomic_bool& cancelled) {
    const QByteArray root = QFile::encodeName(m_path);
    std::error_code error;
    fs::recursive_directory_iterator walk(fs::path(root.constData()), error);
    QByteArray path = root;  // also that of a folder which the next step can't enter
    for (; !error && walk != fs::recursive_directory_iterator(); walk.increment(error)) {
        if (cancelled)
            return Reason::Cancelled;
        path = QByteArray::fromStdString(walk->path().string());
        const QByteArray relative = path.mid(root.endsWith('/') ? root.size() : root.size() + 1);
        if (++m_entries > MaximumEntries)
            return Reason(Reason::UnfitFolder, {m_path});
        if (!BackupPath::isInside(relative))
            return Reason(Reason::PathTooLong, {QString::fromUtf8(path).left(MaximumShown) + QChar(0x2026)});
        std::error_code fault;
        const fs::file_status status = walk->symlink_status(fault);
        if (fault)
            return cannotRead(path, fault.value());
        if (fs::is_directory(status)) {
            m_items += Item{relative, Type::Directory};
        } else if (fs::is_regular_file(status)) {
            m_items += Item{relative, Type::File};
            noteFile(QString::fromUtf8(relative), qint64(walk->file_size(fault)));
            if (fault)
                return cannotRead(path, fault.value());
            if (isExecutable(QString::fromUtf8(relative)))
                noteProgram(QString::fromUtf8(relative), PeFile::read(QString::fromUtf8(path)));
        } else if (fs::is_symlink(status) &&
                   BackupPath::staysInside(
                       relative, QByteArray::fromStdString(fs::read_symlink(walk->path(), fault).string()))) {
            m_items += Item{relative, Type::Link};
        } else {
            leaveOut(QString::fromUtf8(relative));
        }
    }
    return error ? cannotRead(path, error.value()) : checkPrograms();
}

Reason PortableFolder::copyTo(const QString& directory, BackupFile::Progress* progress) {
    const QByteArray root = QFile::encodeName(directory) + '/';
    for (const Item& item : qAsConst(m_items)) {
        const Reason fault =
            progress->cancelled ? Reason(Reason::Cancelled) : copyItem(item, root + item.path, progress);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

Reason PortableFolder::copyItem(const Item& item, const QByteArray& target,
                                BackupFile::Progress* progress) const {
    const QByteArray source = QFile::encodeName(m_path) + '/' + item.path;
    const auto step = [progress](qint64 bytes) {
        progress->done += bytes;
        return !progress->cancelled;
    };
    errno = 0;
    switch (item.type) {
        case Type::Directory:
            if (::mkdir(target.constData(), 0777) == 0)
                return {};
            break;
        case Type::Link: {
            std::error_code fault;
            const fs::path to = fs::read_symlink(fs::path(source.constData()), fault);
            // It may have been changed since.
            if (fault || !BackupPath::staysInside(item.path, QByteArray::fromStdString(to.string())))
                return cannotRead(source, fault ? fault.value() : EINVAL);
            if (::symlink(to.c_str(), target.constData()) == 0)
                return {};
            break;
        }
        case Type::File:
            switch (FileTree::copyFile(source, target, step)) {
                case FileTree::Copied::Whole:
                    return {};
                case FileTree::Copied::Stopped:
                    return Reason::Cancelled;
                case FileTree::Copied::Unreadable:
                    return cannotRead(source, errno);
                case FileTree::Copied::Unwritable:
                    break;
            }
    }
    return cannotWrite(QString::fromUtf8(target), errno);
}
