#include "bottleservice/wine/HiddenDrives.h"

#include <unistd.h>
#include <cerrno>
#include <cstring>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

void HiddenDrives::hide(const QString& prefix) {
    static const QRegularExpression drive("\\A[abd-z]::?\\z");
    const QDir devices(prefix + "/dosdevices");
    const QStringList names =
        devices.entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : names.filter(drive)) {
        const QByteArray path = QFile::encodeName(devices.filePath(name));
        char target[4096];
        const ssize_t length = readlink(path.constData(), target, sizeof target);
        if (length > 0 && unlink(path.constData()) == 0)
            m_targets.insert(devices.filePath(name), QFile::decodeName(QByteArray(target, int(length))));
    }
}

QString HiddenDrives::putBack() {
    for (auto it = m_targets.constBegin(); it != m_targets.constEnd(); ++it) {
        if (symlink(QFile::encodeName(it.value()).constData(), QFile::encodeName(it.key()).constData()) !=
                0 &&
            errno != EEXIST)
            return QString("Cannot make the drive %1 of the bottle again: %2.")
                .arg(it.key().section('/', -1), QString::fromLocal8Bit(strerror(errno)));
    }
    m_targets.clear();
    return {};
}
