#include "store/install/DownloadPart.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QThread>

namespace {

constexpr int LongestValidator = 100;
constexpr int SumCharacters = 16;
const QLatin1String Prefix(".setup-"), Suffix(".part");
constexpr auto Encoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

QString prefixOf(const QUrl& url) {
    const QByteArray address = url.toEncoded(QUrl::RemoveFragment);
    return Prefix +
           QCryptographicHash::hash(address, QCryptographicHash::Sha256).toHex().left(SumCharacters) + '-';
}

/// Null for what is no regular file, or another download has.
std::unique_ptr<QFile> openLocked(const QString& path) {
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    auto file = std::make_unique<QFile>();
    struct stat status {};
    const bool isFree = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
                        status.st_uid == ::getuid() && ::flock(fd, LOCK_EX | LOCK_NB) == 0;
    if (isFree && file->open(fd, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle))
        return file;
    ::close(fd);
    return nullptr;
}

void removeOld(const QString& directory) {
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-DownloadPart::DaysKept);
    static const QRegularExpression own(R"(\A\.setup-([0-9a-f]{16}-[\w-]*|[A-Za-z]{6})\.part\z)");
    const auto parts = QDir(directory).entryInfoList({Prefix + '*' + Suffix}, QDir::Files | QDir::Hidden);
    for (const QFileInfo& part : parts) {
        if (own.match(part.fileName()).hasMatch() && part.lastModified() < oldest &&
            openLocked(part.filePath())) {
            qInfo().noquote() << "remove old part of a download" << part.filePath();
            QFile::remove(part.filePath());
        }
    }
}

}  // namespace

std::shared_ptr<DownloadPart> DownloadPart::open(const QString& directory, const QUrl& url, QString* reason) {
    QDir().mkpath(directory);
    removeOld(directory);
    const std::shared_ptr<DownloadPart> part(new DownloadPart);
    const QString prefix = prefixOf(url);
    part->m_keptName = directory + '/' + prefix;
    if (!part->openKept(directory, prefix) && !part->openNew(directory, reason))
        return nullptr;
    part->m_file->moveToThread(QCoreApplication::instance()->thread());
    return part;
}

bool DownloadPart::openKept(const QString& directory, const QString& prefix) {
    for (const QFileInfo& kept :
         QDir(directory).entryInfoList({prefix + '*' + Suffix}, QDir::Files | QDir::Hidden)) {
        const QByteArray code = kept.fileName().mid(prefix.size()).chopped(Suffix.size()).toLatin1();
        m_validator = QByteArray::fromBase64(code, Encoding);
        m_path = kept.filePath();
        // What comes back differently was not written by this class.
        if (m_validator.toBase64(Encoding) == code && (m_file = openLocked(m_path)) && canBeResumed())
            return true;
        m_file.reset();
    }
    m_validator.clear();
    return false;
}

bool DownloadPart::openNew(const QString& directory, QString* reason) {
    auto file = std::make_unique<QTemporaryFile>(directory + '/' + Prefix + "XXXXXX" + Suffix);
    if (!file->open()) {
        *reason = file->errorString();
        return false;
    }
    file->setAutoRemove(false);
    m_path = file->fileName();  // it has none before
    ::flock(file->handle(), LOCK_EX | LOCK_NB);
    m_file = std::move(file);
    return true;
}

DownloadPart::~DownloadPart() {
    settle();
}

void DownloadPart::settle() {
    const bool isFound = m_path.startsWith(m_keptName);  // another download may have the name
    if (m_file && !(isFound && m_file->flush() && canBeResumed()))
        discard();
    m_file.reset();
}

/// Under its name it is found after a crash as well.
void DownloadPart::setValidator(const QByteArray& validator) {
    m_validator = validator.size() <= LongestValidator ? validator : QByteArray();
    const QString name = m_keptName + QString::fromLatin1(m_validator.toBase64(Encoding)) + Suffix;
    if (!m_validator.isEmpty() && name != m_path && QFile::rename(m_path, name))
        m_path = name;
}

void DownloadPart::restart() {
    m_file->resize(0);
    m_file->seek(0);
}

void DownloadPart::discard() {
    QFile::remove(m_path);
    m_file.reset();
    m_validator.clear();
}

bool DownloadPart::moveTo(const QString& path) {
    // rename() of a temporary file would replace what came meanwhile.
    if (!QFile::rename(m_path, path))
        return false;
    m_file.reset();
    return true;
}
