#include "fenk/instance/SingleInstance.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <cerrno>

#include "fenk/instance/SingleInstanceMessage.h"
#include "fenk/instance/SingleInstanceSender.h"
#include "fenk/instance/SingleInstanceServer.h"

namespace Fenk {
namespace {

constexpr int RetryMs = 5;

/// Whether only this user can write to the directory. Does not follow links.
bool isPrivateDirectory(const QString& path) {
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::getuid() && (status.st_mode & 022) == 0;
}

QString fallbackDirectory() {
    const QString path = QStringLiteral("/tmp/.fenk-%1").arg(::getuid());
    ::mkdir(QFile::encodeName(path).constData(), 0700);
    return isPrivateDirectory(path) ? path : QString();
}

/// The path of a socket is limited to about 100 bytes, including the name.
bool fitsSocket(const QString& directory, const QString& name) {
    const QByteArray path = QFile::encodeName(directory + '/' + name + ".socket");
    return path.size() < int(sizeof(sockaddr_un::sun_path));
}

QString runtimeDirectoryFor(const QString& wanted, const QString& name) {
    const auto usable = [&name](const QString& directory) {
        return QDir::isAbsolutePath(directory) && isPrivateDirectory(directory) &&
               fitsSocket(directory, name);
    };
    for (const QString& candidate : {wanted, qEnvironmentVariable("XDG_RUNTIME_DIR")})
        if (usable(candidate))
            return candidate;
    // Last, since it creates a directory and logs a warning if the variable is not set.
    const QString standard = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return usable(standard) ? standard : fallbackDirectory();
}

QString fileNameFor(const QString& key) {
    static const QRegularExpression harmless(QStringLiteral("\\A[A-Za-z0-9_-][A-Za-z0-9._-]{0,31}\\z"));
    if (harmless.match(key).hasMatch())
        return key;
    return QString::fromLatin1(
        QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1).toHex().left(32));
}

}  // namespace

SingleInstance::SingleInstance(const QString& key, const QString& runtimeDirectory, QObject* parent)
    : QObject(parent), m_name(fileNameFor(key)) {
    m_directory = runtimeDirectoryFor(runtimeDirectory, m_name);
}

SingleInstance::~SingleInstance() {
    // The lock is still held, so the socket is ours. The lock file stays: if it were removed, two processes
    // could lock two files of the same name.
    if (m_server)
        ::unlink(QFile::encodeName(socketPath()).constData());
}

QString SingleInstance::socketPath() const {
    return m_directory + '/' + m_name + ".socket";
}

QString SingleInstance::lockPath() const {
    return m_directory + '/' + m_name + ".lock";
}

SingleInstance::Claim SingleInstance::claim(const QStringList& arguments, int timeoutMs) {
    if (m_lock.isValid())
        return Claim::First;
    const qint64 deadline = SingleInstanceSender::monotonicMs() + timeoutMs;
    const QByteArray message =
        SingleInstanceMessage::encode(withAbsoluteFiles(arguments, QDir::currentPath()));
    for (;;) {
        if (tryLock())
            return listen();
        if (message.isEmpty()) {
            qWarning() << "single instance: too many arguments to hand over:" << arguments.size();
            return Claim::Unreachable;
        }
        using SingleInstanceSender::Outcome;
        switch (SingleInstanceSender::send(socketPath(), message, deadline)) {
            case Outcome::Confirmed:
                return Claim::Delivered;
            case Outcome::Refused:
                qWarning() << "single instance: the running process refused the arguments";
                return Claim::Unreachable;
            case Outcome::NobodyListens:  // not yet or no longer; the lock decides
            case Outcome::TimedOut:
                break;
        }
        if (SingleInstanceSender::monotonicMs() >= deadline) {
            qWarning() << "single instance: the running process did not answer within" << timeoutMs << "ms";
            return Claim::Unreachable;
        }
        ::poll(nullptr, 0, RetryMs);
    }
}

/// Also true if locking is not possible at all.
bool SingleInstance::tryLock() {
    if (m_directory.isEmpty()) {
        qWarning() << "single instance: no private runtime directory, cannot look for other instances";
        return true;
    }
    OwnedFd file(
        ::open(QFile::encodeName(lockPath()).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isValid()) {
        qWarning() << "single instance: cannot open" << lockPath() << qt_error_string(errno);
        return true;
    }
    int result = 0;
    do {
        result = ::flock(file.get(), LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0 && errno == EWOULDBLOCK)
        return false;
    if (result == 0)
        m_lock = std::move(file);
    else
        qWarning() << "single instance: cannot lock" << lockPath() << qt_error_string(errno);
    return true;
}

SingleInstance::Claim SingleInstance::listen() {
    if (!m_lock.isValid())
        return Claim::First;
    auto server = std::make_unique<SingleInstanceServer>();
    if (!server->listen(socketPath())) {
        qWarning() << "single instance: cannot listen on" << socketPath() << qt_error_string(errno);
        return Claim::First;
    }
    m_server = std::move(server);
    connect(m_server.get(), &SingleInstanceServer::received, this, &SingleInstance::newProcessInstance);
    return Claim::First;
}

QStringList SingleInstance::withAbsoluteFiles(QStringList arguments, const QString& directory) {
    const QDir from(directory);
    // Only files: a word such as a bottle's name may happen to be the name of a directory.
    for (int i = 1; i < arguments.size(); ++i) {
        QString& argument = arguments[i];
        if (argument.isEmpty() || argument.startsWith('-') || argument.startsWith('/'))
            continue;
        const QFileInfo file(from, argument);
        if (file.isFile())
            argument = file.absoluteFilePath();
    }
    return arguments;
}

}  // namespace Fenk
