#include "storeserver/reports/ReportDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <cerrno>

#include "storeserver/reports/OwnKey.h"
#include "storeserver/reports/PlainText.h"
#include "storeserver/reports/PrivateFile.h"

namespace StoreServer {

namespace {

const QString NewPrefix = ".new-";
const QString TimeFormat = "yyyyMMdd-HHmmss";
constexpr int TimeLength = 15;

bool look(const QString& path, struct stat* facts) {
    return ::lstat(QFile::encodeName(path).constData(), facts) == 0;
}

int rename(const QString& from, const QString& to) {
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0 ? 0 : errno;
}

QString suffixOf(const QString& path) {
    return path.mid(path.indexOf('.', path.lastIndexOf('/')));
}

QString nameOf(const QString& path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

/// What all files of a directory take, but for those that are being written. A file with several names is
/// there once.
qint64 bytesOf(const QString& path) {
    qint64 bytes = 0;
    QSet<quint64> known;
    QDirIterator all(path, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString file = all.next();
        struct stat facts = {};
        if (file.startsWith(path + "/incoming/") || !look(file, &facts))
            continue;
        const bool isKnown = S_ISREG(facts.st_mode) && facts.st_nlink > 1 && known.contains(facts.st_ino);
        if (isKnown)
            continue;
        if (S_ISREG(facts.st_mode) && facts.st_nlink > 1)
            known.insert(facts.st_ino);
        bytes += ReportRoom::rounded(facts.st_size);
    }
    return bytes;
}

int warned(int error, const QString& what) {
    if (error != 0)
        qWarning().noquote() << what << "cannot be kept:" << qt_error_string(error);
    return error;
}

}  // namespace

ReportDirectory::ReportDirectory(const QString& path, qint64 roomBytes, qint64 nowMs)
    : m_path(QDir::cleanPath(path)), m_room(roomBytes, [this](const QString& upload) {
          struct stat facts = {};
          const QString file = m_path + "/uploads/" + upload;
          return look(file, &facts) && QFile::remove(file) && facts.st_nlink == 1;
      }) {
    if (const int error = makeDirectories())
        throw ReportError(QString("%1 cannot be made: %2.").arg(m_path, qt_error_string(error)));
    m_lock.reset(::open(QFile::encodeName(m_path + "/lock").constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!m_lock.isValid() || ::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0)
        throw ReportError(QString("%1 is not writable, or another server uses it.").arg(m_path));
    struct stat facts = {};
    if (::stat(QFile::encodeName(m_path).constData(), &facts) == 0 && (facts.st_mode & 077) != 0)
        qWarning().noquote() << m_path << "can be read by others; chmod 700 keeps reports private";
    m_ownKey = StoreServer::ownKey(m_path + "/own-key");
    removeLeftOvers();
    readReports(nowMs);
    tidy(nowMs);
    QDirIterator uploads(m_path + "/uploads", QDir::Files | QDir::Hidden | QDir::System);
    while (uploads.hasNext()) {
        const QString file = uploads.next();
        if (look(file, &facts) && facts.st_nlink == 1)
            m_room.addUnused(nameOf(file), ReportRoom::rounded(facts.st_size),
                             qint64(facts.st_mtim.tv_sec) * 1000);
    }
}

int ReportDirectory::makeDirectories() const {
    for (const char* name : {"", "/reports", "/uploads", "/incoming"}) {
        if (const int error = PrivateFile::makeDirectory(m_path + name))
            return error;
    }
    return 0;
}

/// Of a process that was killed.
void ReportDirectory::removeLeftOvers() {
    QDir files(m_path + "/incoming");
    for (const QString& name : files.entryList(QDir::Files | QDir::Hidden | QDir::System))
        files.remove(name);
    const QDir reports(reportsOf(m_path));
    for (const QString& name : reports.entryList({NewPrefix + '*'}, QDir::Dirs | QDir::Hidden))
        QDir(reports.filePath(name)).removeRecursively();
}

void ReportDirectory::readReports(qint64 nowMs) {
    const QString oldest = QDateTime::fromMSecsSinceEpoch(nowMs - SameMs, Qt::UTC).toString(TimeFormat);
    QHash<QByteArray, QString> recent;
    for (QDirIterator all(reportsOf(m_path), QDir::Dirs | QDir::NoDotAndDotDot); all.hasNext();) {
        all.next();
        if (const QString id = all.fileName(); id > oldest)
            recent.insert(id.mid(TimeLength + 1).toLatin1(), id);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (auto known = m_recent.cbegin(); known != m_recent.cend(); ++known) {
        if (known.value() > oldest)
            recent.insert(known.key(), known.value());
    }
    m_recent = recent;
}

void ReportDirectory::tidy(qint64 nowMs) {
    warned(makeDirectories(), "what comes");
    sweep(nowMs);
    readReports(nowMs);
    m_room.beginCount();
    m_room.endCount(bytesOf(m_path));
}

void ReportDirectory::sweep(qint64 nowMs) {
    QDirIterator files(m_path + "/uploads", QDir::Files | QDir::Hidden | QDir::System);
    while (files.hasNext()) {
        const QString file = files.next();
        struct stat facts = {};
        if (!look(file, &facts))
            continue;
        const qint64 age = nowMs - qint64(facts.st_mtim.tv_sec) * 1000;
        if (age <= (facts.st_nlink > 1 ? UsedMs : UnusedMs))
            continue;
        if (QFile::remove(file))
            m_room.removeUnused(nameOf(file));
        else
            qWarning().noquote() << file << "cannot be removed";
    }
}

QString ReportDirectory::uploadOf(const QString& key) const {
    for (const char* suffix : {".png", ".jpg", ".gif", ".tar.gz"}) {
        const QString file = m_path + "/uploads/" + key + suffix;
        if (QFile::exists(file))
            return file;
    }
    return {};
}

ReportDirectory::Incoming ReportDirectory::beginUpload(const QString& key) {
    const auto open = [name = QFile::encodeName(incoming(key))] {
        return ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    };
    Incoming result;
    result.file.reset(open());
    if (!result.file.isValid() && errno == ENOENT && makeDirectories() == 0)
        result.file.reset(open());
    if (!result.file.isValid()) {
        result.error = errno;
        if (result.error != EEXIST)
            warned(result.error, "an upload");
        return result;
    }
    // After it is ours, so that nobody makes it in between.
    if (!hasUpload(key))
        return result;
    dropUpload(key);
    return {Fenk::OwnedFd(), EEXIST};
}

int ReportDirectory::keepUpload(const QString& key, const QString& suffix, qint64 bytes,
                                ReportRoom::Part& part) {
    const QString name = key + '.' + suffix;
    const QString target = m_path + "/uploads/" + name;
    int error = rename(incoming(key), target);
    if (error == ENOENT && makeDirectories() == 0)
        error = rename(incoming(key), target);
    if (warned(error, "an upload") != 0)
        return error;
    part.keep(ReportRoom::rounded(bytes), name);
    return warned(PrivateFile::syncDirectory(m_path + "/uploads"), "an upload");
}

void ReportDirectory::dropUpload(const QString& key) {
    QFile::remove(incoming(key));
}

bool ReportDirectory::hasReport(const QByteArray& code, qint64 nowMs) const {
    const QString oldest = QDateTime::fromMSecsSinceEpoch(nowMs - SameMs, Qt::UTC).toString(TimeFormat);
    QString id;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        id = m_recent.value(code);
    }
    return !id.isEmpty() && id > oldest && QFile::exists(reportsOf(m_path) + '/' + id);
}

int ReportDirectory::save(const Report& report, const std::string& owner, qint64 nowMs) {
    const QString id = QDateTime::fromMSecsSinceEpoch(nowMs, Qt::UTC).toString(TimeFormat) + '-' +
                       QString::fromLatin1(report.code);
    QStringList uploads;
    QStringList files;
    for (int index = 0; index < report.keys.size(); ++index) {
        uploads += uploadOf(report.keys[index]);
        files += report.names[index] + suffixOf(uploads.last());
    }
    QJsonObject record = report.record;
    record.insert("files", QJsonArray::fromStringList(files));
    const QByteArray content = plainJson(QJsonDocument(record).toJson(QJsonDocument::Compact)) + '\n';
    qint64 bytes = ReportRoom::BlockBytes + ReportRoom::rounded(content.size());
    const auto part = m_room.reserve(bytes, owner, nowMs);
    if (!part || !part->use(bytes))
        return warned(ENOSPC, id);
    // Nobody else has this name, so that nothing is locked while the disk writes.
    const QString fresh = QString("%1/%2%3").arg(reportsOf(m_path), NewPrefix).arg(++m_fresh);
    int error = fill(fresh, files, uploads, content, &bytes);
    if (error == 0)
        error = rename(fresh, reportsOf(m_path) + '/' + id);
    if (error != 0) {
        QDir(fresh).removeRecursively();
        return error == EEXIST || error == ENOTEMPTY ? 0 : warned(error, id);
    }
    part->keep(bytes);
    for (const QString& upload : qAsConst(uploads))
        m_room.setUsed(nameOf(upload));
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_recent.insert(report.code, id);
    }
    qInfo().noquote() << "a report has come:" << id;
    return warned(PrivateFile::syncDirectory(reportsOf(m_path)), id);
}

/// Adds to `bytes` what copies take.
int ReportDirectory::fill(const QString& directory, const QStringList& files, const QStringList& uploads,
                          const QByteArray& content, qint64* bytes) const {
    int error = PrivateFile::makeDirectory(directory);
    if (error == ENOENT && makeDirectories() == 0)
        error = PrivateFile::makeDirectory(directory);
    for (int index = 0; error == 0 && index < files.size(); ++index) {
        qint64 copied = 0;
        error = uploads[index].isEmpty()
                    ? ENOENT
                    : PrivateFile::addName(uploads[index], directory + '/' + files[index], &copied);
        *bytes += ReportRoom::rounded(copied);
    }
    if (error == 0)
        error = PrivateFile::write(directory + "/report.json", content);
    return error == 0 ? PrivateFile::syncDirectory(directory) : error;
}

}  // namespace StoreServer
