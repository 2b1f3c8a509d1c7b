#include "bottleservice/wine/BottleLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <QFile>
#include <cerrno>

#include "bottleservice/wine/LaunchRecords.h"

BottleLock::Refusal BottleLock::acquire(const QString& bottlePath, const QString& runningDir,
                                        const QString& bottle) {
    m_fd.reset(
        ::open(QFile::encodeName(bottlePath + "/drive_c").constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const bool isTaken =
        m_fd.isValid() && ::flock(m_fd.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    const QString work = LaunchRecord::maintenance(runningDir, bottle);
    if (!isTaken && work.isEmpty())
        return {};
    m_fd.reset();
    if (work == QLatin1String("packing"))
        return {Reason::BeingPacked, false};
    return {work == QLatin1String("upgrade") ? Reason::BeingUpgraded : Reason::BeingChanged};
}
