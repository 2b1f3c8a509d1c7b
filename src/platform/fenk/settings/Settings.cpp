#include "fenk/settings/Settings.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cstdio>

#include "fenk/settings/SettingsFile.h"
#include "fenk/system/OwnedFd.h"

namespace Fenk {
namespace {

constexpr int LockWaitMs = 2000;
constexpr int LockStepMs = 5;

/// Locks the directory against other processes that write settings. The kernel releases the lock of a killed
/// process, and no lock file remains. Without effect where directories cannot be locked.
class DirectoryLock {
public:
    explicit DirectoryLock(const QString& directory)
        : m_fd(::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        for (int waited = 0; m_fd.isValid() && ::flock(m_fd.get(), LOCK_EX | LOCK_NB) != 0;
             waited += LockStepMs) {
            m_busy = errno == EWOULDBLOCK && waited >= LockWaitMs;
            if (m_busy || (errno != EWOULDBLOCK && errno != EINTR))
                return;
            ::poll(nullptr, 0, LockStepMs);
        }
    }

    bool isBusy() const { return m_busy; }

private:
    OwnedFd m_fd;
    bool m_busy = false;
};

struct Read {
    enum State { Missing, Unusable, Good } state = Missing;
    SettingsFile file;
    QString reason;
};

Read readFile(const QString& path) {
    Read result;
    QFile file(path);
    if (!file.exists())
        return result;
    result.state = Read::Unusable;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        result.reason = file.error() == QFile::NoError ? QStringLiteral("not a file") : file.errorString();
        return result;
    }
    if (auto parsed = SettingsFile::parse(file.read(SettingsFile::MaxBytes + 1))) {
        result.file = std::move(*parsed);
        result.state = Read::Good;
    } else {
        result.reason = "not a settings file";
    }
    return result;
}

/// Renames an invalid file before the next write.
bool renameBroken(const QString& path) {
    const QString aside = path + ".broken";
    if (!QFileInfo(path).isFile() ||
        std::rename(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) != 0)
        return false;
    qWarning() << "settings: kept aside" << aside;
    return true;
}

}  // namespace

std::unique_ptr<Settings> Settings::fromJson(const QString& jsonPath, const QString& iniPath,
                                             QString* error) {
    QFile json(jsonPath);
    QString reason;
    std::optional<SettingsDescription> description;
    if (json.open(QIODevice::ReadOnly))
        description = SettingsDescription::fromJson(json.readAll(), &reason);
    else
        reason = json.errorString();
    if (!description) {
        qWarning() << "settings: cannot use the description" << jsonPath << reason;
        if (error)
            *error = reason;
        return nullptr;
    }
    std::unique_ptr<Settings> settings(new Settings(std::move(*description), iniPath));
    settings->load();
    return settings;
}

Settings::Settings(SettingsDescription description, const QString& iniPath)
    : m_description(std::move(description)), m_iniPath(iniPath) {}

Settings::~Settings() {
    if (!m_changed.isEmpty())
        sync();
}

void Settings::load() {
    const Read read = readFile(m_iniPath);
    if (read.state == Read::Unusable)
        qWarning() << "settings: using defaults, cannot read" << m_iniPath << read.reason;
    if (read.state != Read::Good)
        return;
    if (read.file.badLines() > 0)
        qWarning() << "settings:" << read.file.badLines() << "lines say nothing in" << m_iniPath;
    for (const QString& key : m_description.keys()) {
        if (!read.file.contains(key))
            continue;
        const QVariant value =
            SettingsDescription::fromText(m_description.find(key)->type, read.file.value(key));
        if (value.isValid())
            m_values.insert(key, value);
        else
            qWarning() << "settings: using the default, wrong value of" << key << "in" << m_iniPath;
    }
}

QStringList Settings::keys() const {
    return m_description.keys();
}

QVariant Settings::option(const QString& key) const {
    const SettingsDescription::Option* option = m_description.find(key);
    if (!option) {
        qWarning() << "settings: no such option" << key;
        return QVariant();
    }
    return m_values.value(key, option->defaultValue);
}

void Settings::setOption(const QString& key, const QVariant& value) {
    const SettingsDescription::Option* option = m_description.find(key);
    const QVariant wanted = option ? SettingsDescription::converted(option->type, value) : QVariant();
    if (!wanted.isValid()) {
        qWarning() << "settings:" << (option ? "value does not fit" : "no such option") << key;
        return;
    }
    if (m_values.contains(key) && m_values.value(key) == wanted)
        return;
    const bool differs = m_values.value(key, option->defaultValue) != wanted;
    m_values.insert(key, wanted);
    m_changed.insert(key);
    scheduleSync();
    if (differs)
        Q_EMIT valueChanged(key, wanted);
}

void Settings::scheduleSync() {
    if (m_syncScheduled)
        return;
    m_syncScheduled = true;
    const auto write = [this] {
        m_syncScheduled = false;
        sync();
    };
    QMetaObject::invokeMethod(this, write, Qt::QueuedConnection);
}

bool Settings::sync() {
    if (m_changed.isEmpty())
        return true;
    const QString directory = QFileInfo(m_iniPath).path();
    if (!QDir().mkpath(directory)) {
        qWarning() << "settings: cannot create" << directory;
        return false;
    }
    const DirectoryLock lock(directory);
    if (lock.isBusy()) {
        qWarning() << "settings: someone else keeps writing to" << directory;
        return false;
    }
    // Read again, to keep what other processes have changed under other keys.
    Read read = readFile(m_iniPath);
    if (read.state == Read::Unusable && !renameBroken(m_iniPath)) {
        qWarning() << "settings: not overwriting" << m_iniPath << read.reason;
        return false;
    }
    for (const QString& key : m_description.keys())
        if (read.state != Read::Good ? m_values.contains(key) : m_changed.contains(key))
            read.file.setValue(
                key, SettingsDescription::toText(m_description.find(key)->type, m_values.value(key)));
    QSaveFile file(m_iniPath);
    const QByteArray bytes = read.file.toBytes();
    if (bytes.size() > SettingsFile::MaxBytes) {
        qWarning() << "settings: too much to write to" << m_iniPath;
        return false;
    }
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        qWarning() << "settings: cannot write" << m_iniPath << file.errorString();
        return false;
    }
    m_changed.clear();
    return true;
}

}  // namespace Fenk
