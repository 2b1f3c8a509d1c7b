#include "storeserver/reports/ReportDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSaveFile>
#include <algorithm>
#include <array>
#include <cerrno>

#include "fenk/system/RegularFile.h"

namespace StoreServer {

namespace {

constexpr int OwnKeyBytes = 32;
constexpr qint64 CountPauseMs = 10 * 1000;
constexpr qint64 SpareShare = 16;  // of the room, to be free after making room
constexpr qint64 SweepPauseMs = 60 * 60 * 1000;
const QString NewPrefix = ".new-";

qint64 rounded(qint64 bytes) {
    return (bytes + ReportDirectory::BlockBytes - 1) / ReportDirectory::BlockBytes *
           ReportDirectory::BlockBytes;
}

/// For the owner alone: reports are private.
void makeDirectory(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat facts = {};
    if (::mkdir(name.constData(), 0700) != 0 &&
        (errno != EEXIST || ::stat(name.constData(), &facts) != 0 || !S_ISDIR(facts.st_mode)))
        throw ReportError(QString("%1 cannot be made: %2.").arg(path, qt_error_string(errno)).toStdString());
}

bool writeFile(const QString& path, const QByteArray& content) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
        file.write(content) == content.size() && file.commit())
        return true;
    qWarning().noquote() << path << "cannot be written:" << file.errorString();
    return false;
}

QString suffixOf(const QString& path) {
    return path.mid(path.indexOf('.', path.lastIndexOf('/')));
}

/// Under a second name, so that a client which has not heard of its success can send its report again.
bool addName(const QString& from, const QString& to) {
    if (::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0 ||
        QFile::copy(from, to))
        return true;
    qWarning().noquote() << to << "cannot be made of" << from;
    return false;
}

}  // namespace

ReportDirectory::ReportDirectory(const QString& path, qint64 roomBytes)
    : m_path(QDir::cleanPath(path)), m_roomBytes(roomBytes) {
    for (const char* name : {"", "/reports", "/uploads", "/incoming"})
        makeDirectory(m_path + name);
    m_lock.reset(::open(QFile::encodeName(m_path + "/lock").constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!m_lock.isValid() || ::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0)
        throw ReportError(
            QString("%1 is not writable, or another server uses it.").arg(m_path).toStdString());
    // SQLite gives its other files the same rights.
    Fenk::OwnedFd(::open(QFile::encodeName(scoresFile()).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    readOwnKey();
    // What a process that was killed has left.
    QDir incomingFiles(m_path + "/incoming");
    for (const QString& name : incomingFiles.entryList(QDir::Files | QDir::Hidden | QDir::System))
        incomingFiles.remove(name);
    const QDir reports(reportsOf(m_path));
    for (const QString& name : reports.entryList({NewPrefix + '*'}, QDir::Dirs | QDir::Hidden))
        QDir(reports.filePath(name)).removeRecursively();
    count();
}

void ReportDirectory::readOwnKey() {
    const QString file = m_path + "/own-key";
    m_ownKey = Fenk::RegularFile::read(file, 2 * OwnKeyBytes).value_or(QByteArray());
    if (m_ownKey.size() == 2 * OwnKeyBytes)
        return;
    std::array<quint32, OwnKeyBytes / sizeof(quint32)> random = {};
    QRandomGenerator::system()->generate(random.begin(), random.end());
    m_ownKey = QByteArray(reinterpret_cast<const char*>(random.data()), OwnKeyBytes).toHex();
    if (!writeFile(file, m_ownKey))
        throw ReportError(QString("%1 cannot be written.").arg(file).toStdString());
}

ReportDirectory::Room::~Room() {
    const std::lock_guard<std::mutex> lock(m_directory.m_mutex);
    m_directory.m_reservedBytes -= m_bytes;
}

std::unique_ptr<ReportDirectory::Room> ReportDirectory::reserve(qint64 bytes, qint64 nowMs) {
    bytes = rounded(bytes);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (qAbs(nowMs - m_sweptMs) >= SweepPauseMs) {
        m_sweptMs = nowMs;
        removeUnused(nowMs);
        count();
    }
    if (m_usedBytes + m_reservedBytes + bytes > m_roomBytes)
        makeRoom(bytes, nowMs);
    if (m_usedBytes + m_reservedBytes + bytes > m_roomBytes)
        return nullptr;
    m_reservedBytes += bytes;
    return std::make_unique<Room>(*this, bytes);
}

/// Counts anew, since reports may have been deleted, but not at each of many requests: makes some room for
/// the next ones as well.
void ReportDirectory::makeRoom(qint64 bytes, qint64 nowMs) {
    if (qAbs(nowMs - m_countedMs) < CountPauseMs)
        return;
    m_countedMs = nowMs;
    count();
    QList<Upload> all = uploads();
    std::sort(all.begin(), all.end(),
              [](const Upload& left, const Upload& right) { return left.changedMs < right.changedMs; });
    for (const Upload& upload : qAsConst(all)) {
        if (m_usedBytes + m_reservedBytes + bytes + m_roomBytes / SpareShare <= m_roomBytes ||
            nowMs - upload.changedMs < YoungMs)
            break;
        if (!upload.isUsed && QFile::remove(upload.path))
            m_usedBytes -= rounded(upload.bytes);
    }
    if (m_usedBytes + m_reservedBytes + bytes > m_roomBytes)
        qWarning().noquote() << "there is no room for more reports in" << m_path;
}

void ReportDirectory::removeUnused(qint64 nowMs) {
    for (const Upload& upload : uploads()) {
        if (nowMs - upload.changedMs > UnusedMs && !QFile::remove(upload.path))
            qWarning().noquote() << upload.path << "cannot be removed";
    }
}

void ReportDirectory::count() {
    m_usedBytes = 0;
    QDirIterator all(m_path, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        struct stat facts = {};
        const QString file = all.next();
        if (::lstat(QFile::encodeName(file).constData(), &facts) != 0)
            continue;
        const bool isCounted =
            S_ISREG(facts.st_mode) && facts.st_nlink > 1 && file.startsWith(m_path + "/uploads/");
        if (!isCounted)
            m_usedBytes += rounded(facts.st_size);
    }
}

QList<ReportDirectory::Upload> ReportDirectory::uploads() const {
    QList<Upload> all;
    QDirIterator files(m_path + "/uploads", QDir::Files | QDir::Hidden | QDir::System);
    while (files.hasNext()) {
        const QString file = files.next();
        struct stat facts = {};
        if (::lstat(QFile::encodeName(file).constData(), &facts) == 0)
            all.append({file, facts.st_size, qint64(facts.st_mtim.tv_sec) * 1000, facts.st_nlink > 1});
    }
    return all;
}

QString ReportDirectory::uploadOf(const QString& key) const {
    for (const char* suffix : {".png", ".jpg", ".gif", ".tar.gz"}) {
        const QString file = m_path + "/uploads/" + key + suffix;
        if (QFile::exists(file))
            return file;
    }
    return {};
}

Fenk::OwnedFd ReportDirectory::beginUpload(const QString& key) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!uploadOf(key).isEmpty())
        return Fenk::OwnedFd();
    return Fenk::OwnedFd(::open(QFile::encodeName(incoming(key)).constData(),
                                O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
}

bool ReportDirectory::keepUpload(const QString& key, const QString& suffix, qint64 bytes) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!QFile::rename(incoming(key), m_path + "/uploads/" + key + '.' + suffix)) {
        qWarning().noquote() << "an upload of" << bytes << "bytes cannot be kept";
        return false;
    }
    m_usedBytes += rounded(bytes);
    return true;
}

void ReportDirectory::dropUpload(const QString& key) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    QFile::remove(incoming(key));
}

ReportDirectory::Saved ReportDirectory::save(const QString& id, const QJsonObject& record,
                                             const QStringList& keys, const QStringList& names) {
    const QString target = reportsOf(m_path) + '/' + id;
    const QString fresh = reportsOf(m_path) + '/' + NewPrefix + id;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (QFile::exists(target))
        return Saved::Before;
    if (::mkdir(QFile::encodeName(fresh).constData(), 0700) == 0 && fill(fresh, record, keys, names) &&
        QDir().rename(fresh, target)) {
        m_usedBytes += BlockBytes + rounded(QJsonDocument(record).toJson().size());
        return Saved::Yes;
    }
    qWarning().noquote() << target << "cannot be made";
    QDir(fresh).removeRecursively();
    return Saved::No;
}

bool ReportDirectory::fill(const QString& directory, const QJsonObject& record, const QStringList& keys,
                           const QStringList& names) const {
    QJsonArray files;
    for (int index = 0; index < keys.size(); ++index) {
        const QString upload = uploadOf(keys[index]);
        const QString name = names[index] + suffixOf(upload);
        if (upload.isEmpty() || !addName(upload, directory + '/' + name))
            return false;
        files.append(name);
    }
    QJsonObject whole = record;
    whole.insert("files", files);
    return writeFile(directory + "/report.json", QJsonDocument(whole).toJson());
}

}  // namespace StoreServer
