#include "bottleservice/backup/BottleSurvey.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "bottleservice/backup/BackupLinks.h"
#include "bottleservice/backup/BackupPath.h"
#include "bottleservice/backup/RestoredPrefix.h"
#include "bottleservice/bottles/PackageOrigin.h"
#include "bottleservice/files/FileTree.h"
#include "fenk/system/OwnedFd.h"

namespace {

using Type = BackupEntry::Type;

constexpr int MaximumLeftOut = 1000;
constexpr int MaximumTargetBytes = 4096;

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

QByteArray targetOf(const QByteArray& path) {
    QByteArray target(MaximumTargetBytes, 0);
    const ssize_t length = ::readlink(path.constData(), target.data(), size_t(target.size()));
    return target.left(int(std::max<ssize_t>(length, 0)));
}

/// What Wine keeps of attributes that Linux does not have.
QByteArray attributesOf(const QByteArray& path) {
    char value[16];
    const ssize_t length = ::lgetxattr(path.constData(), "user.DOSATTRIB", value, sizeof value);
    const QByteArray text(value, int(std::max<ssize_t>(length, 0)));
    static const QRegularExpression form("^0x[0-9a-f]{1,8}$");
    return form.match(QString::fromLatin1(text)).hasMatch() ? text : QByteArray();
}

qint64 milliseconds(const timespec& time) {
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
}

bool isSame(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

Reason unreadable(const QByteArray& path) {
    return Reason(Reason::CannotRead, {QString::fromUtf8(path), QString::fromLocal8Bit(strerror(errno))});
}

/// The bytes of a file that were never written. 0 where the file system does not tell.
qint64 holesOf(const QByteArray& path, const struct stat& status) {
    constexpr qint64 BlockBytes = 512;
    if (status.st_blocks * BlockBytes >= status.st_size)
        return 0;
    const Fenk::OwnedFd file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    qint64 data = 0, end = 0;
    for (;;) {
        const off_t begin = ::lseek(file.get(), end, SEEK_DATA);
        if (begin < 0)
            return errno == ENXIO ? status.st_size - data : 0;
        end = ::lseek(file.get(), begin, SEEK_HOLE);
        if (end <= begin)
            return 0;
        data += end - begin;
    }
}

}  // namespace

QByteArray BottleSurvey::pathOf(const QByteArray& path) const {
    return QFile::encodeName(m_place.bottlePath) + '/' + path;
}

Reason BottleSurvey::take(const std::atomic_bool& cancelled) {
    struct stat root = {};
    if (::stat(QFile::encodeName(m_place.bottlePath).constData(), &root) != 0)
        return unreadable(QFile::encodeName(m_place.bottlePath));
    m_device = root.st_dev;
    findOwnDirectories();
    const Reason fault = walk({}, cancelled);
    checkLinks();
    return fault;
}

void BottleSurvey::findOwnDirectories() {
    const QStringList directories =
        m_place.ownDirectories + QStringList(PackageOrigin::sharedFiles(m_place.bottlePath));
    for (const QString& directory : directories) {
        const QString real = QFileInfo(directory).canonicalFilePath();
        if (!real.isEmpty())
            m_ownDirectories += real;
    }
}

void BottleSurvey::checkLinks() {
    // A link may lead over one that was left out before.
    for (bool hasChanged = true; hasChanged;) {
        const BackupLinks links(list);
        QVector<QByteArray> standard;
        for (const QByteArray& path : qAsConst(list.standardLinks)) {
            if (links.isTaken(path))
                leaveOut(path, {});
            else
                standard += path;
        }
        list.standardLinks = standard;
        QVector<BackupEntry> kept;
        kept.reserve(list.entries.size());
        for (const BackupEntry& entry : qAsConst(list.entries)) {
            if (entry.type == Type::Link && (links.isAmbiguous(entry) || links.leadsOut(entry)))
                leaveOut(entry.path, entry.target);
            else
                kept += entry;
        }
        hasChanged = kept.size() < list.entries.size();
        list.entries = kept;
    }
}

Reason BottleSurvey::walk(const QByteArray& directory, const std::atomic_bool& cancelled) {
    const std::unique_ptr<DIR, CloseDirectory> handle(::opendir(pathOf(directory).constData()));
    if (!handle)
        return unreadable(pathOf(directory));
    std::vector<Found> found;
    while (const dirent* item = ::readdir(handle.get())) {
        const QByteArray name = item->d_name;
        const QByteArray path = directory.isEmpty() ? name : directory + '/' + name;
        Found entry{path, {}};
        if (name == "." || name == ".." || BackupPath::isPassedOver(path))
            continue;
        if (::fstatat(dirfd(handle.get()), item->d_name, &entry.status, AT_SYMLINK_NOFOLLOW) != 0)
            return unreadable(pathOf(path));
        found.push_back(entry);
    }
    std::sort(found.begin(), found.end(),
              [](const Found& one, const Found& other) { return one.path < other.path; });
    for (const Found& entry : found) {
        if (cancelled)
            return Reason::Cancelled;
        if (!BackupPath::isInside(entry.path))
            return Reason(Reason::PathTooLong, {QString::fromUtf8(entry.path)});
        const bool isForeign = entry.status.st_dev != m_device;
        if (S_ISLNK(entry.status.st_mode)) {
            const Reason fault = addLink(entry.path);
            if (!fault.isEmpty())
                return fault;
        } else if (S_ISREG(entry.status.st_mode)) {
            addFile(entry.path, entry.status);
        } else if (S_ISDIR(entry.status.st_mode) && !isForeign) {
            stamp(entry.path, entry.status);
            list.entries +=
                BackupEntry{Type::Directory, entry.path, 0, 0, 0, {}, attributesOf(pathOf(entry.path))};
            const Reason fault = walk(entry.path, cancelled);
            if (!fault.isEmpty())
                return fault;
        } else {
            leaveOut(entry.path, {});
        }
        if (list.entries.size() > BackupList::MaximumEntries)
            return Reason(Reason::BottleTooLarge);
    }
    return {};
}

void BottleSurvey::addFile(const QByteArray& path, const struct stat& status) {
    stamp(path, status);
    const QString file = QFile::decodeName(pathOf(path));
    if (!m_place.templatePath.isEmpty() && BackupPath::isWinePlace(path) &&
        targetOf(QFile::encodeName(m_place.templatePath) + '/' + path).isEmpty() &&
        FileTree::sameContent(file, m_place.templatePath + '/' + QFile::decodeName(path))) {
        list.wineFiles += path;
        return;
    }
    list.entries += BackupEntry{Type::File,
                                path,
                                status.st_size,
                                milliseconds(status.st_mtim),
                                int(status.st_mode) & 0755,
                                {},
                                attributesOf(pathOf(path)),
                                holesOf(pathOf(path), status)};
}

bool BottleSurvey::isInTemplate(const QByteArray& path, const QByteArray& target) const {
    const QByteArray original = targetOf(QFile::encodeName(m_place.templatePath) + '/' + path);
    return !m_place.templatePath.isEmpty() && !original.isEmpty() && (target.isEmpty() || original == target);
}

/// Links out of the bottle that every new bottle gets, or Wine at its start.
bool BottleSurvey::isMadeByWine(const QByteArray& path, const QByteArray& target) const {
    if (path.startsWith("dosdevices/"))
        return target == "/" || target.startsWith("/dev/") || isInTemplate(path, target);
    const QList<QByteArray> parts = path.split('/');
    if (m_place.templatePath.isEmpty())
        return parts.size() == 4 && QFileInfo(QFile::decodeName(pathOf(path))).isDir();
    if (isInTemplate(path, {}))
        return true;
    // A bottle that came from elsewhere may have another user.
    const QByteArray user = RestoredPrefix::userOf(m_place.templatePath).toUtf8();
    return parts.size() == 4 && isInTemplate("drive_c/users/" + user + '/' + parts[3], {});
}

Reason BottleSurvey::addLink(const QByteArray& path) {
    QByteArray target = targetOf(pathOf(path));
    const QByteArray root = QFile::encodeName(m_place.bottlePath) + '/';
    if (target.startsWith(root))
        target = QByteArray("../").repeated(path.count('/')) + target.mid(root.size());
    if (BackupPath::staysInside(path, target)) {
        list.entries += BackupEntry{Type::Link, path, 0, 0, 0, target, {}};
        return {};
    }
    if (BackupPath::isWinePlace(path) && isInTemplate(path, target)) {
        list.wineFiles += path;
        return {};
    }
    if (BackupPath::isStandardLink(path) && isMadeByWine(path, target)) {
        list.standardLinks += path;
        return {};
    }
    // A file of Wine or of a component becomes a real one.
    struct stat status = {};
    const QString real = QFileInfo(QFile::decodeName(pathOf(path))).canonicalFilePath();
    // Nothing of it would be in the backup, and the restored bottle would lack it. What the template does not
    // have either is no file of Wine's any more.
    const bool isWines =
        m_place.templatePath.isEmpty() ||
        ::lstat((QFile::encodeName(m_place.templatePath) + '/' + path).constData(), &status) == 0;
    if (m_place.isCopy && isWines && path.startsWith("drive_c/windows/") && target.startsWith('/') &&
        real.isEmpty())
        return Reason(Reason::WineFileGone, {QString::fromUtf8(path)});
    const bool isOwn =
        std::any_of(m_ownDirectories.begin(), m_ownDirectories.end(),
                    [&real](const QString& directory) { return real.startsWith(directory + '/'); });
    if (isOwn && ::stat(pathOf(path).constData(), &status) == 0 && S_ISREG(status.st_mode))
        addFile(path, status);
    else
        leaveOut(path, target);
    return {};
}

void BottleSurvey::leaveOut(const QByteArray& path, const QByteArray& target) {
    // The last line says that there are more.
    if (list.leftOut.size() == MaximumLeftOut - 1)
        list.leftOut += QString(QChar(0x2026));
    if (list.leftOut.size() >= MaximumLeftOut)
        return;
    const QString text = BackupPath::toText(path);
    list.leftOut += target.isEmpty() ? text : text + " -> " + BackupPath::toText(target);
}

void BottleSurvey::stamp(const QByteArray& path, const struct stat& status) {
    // The application keeps notes and icons beside the drives.
    if (path.startsWith("drive_") || path.endsWith(".reg") || path == "bottle.yml")
        m_stamps.push_back({path, status.st_mtim, status.st_ctim, status.st_size});
}

bool BottleSurvey::isUnchanged() const {
    return std::all_of(m_stamps.begin(), m_stamps.end(), [this](const Stamp& stamp) {
        struct stat now = {};
        return ::stat(pathOf(stamp.path).constData(), &now) == 0 && isSame(now.st_mtim, stamp.modified) &&
               isSame(now.st_ctim, stamp.changed) && now.st_size == stamp.size;
    });
}
