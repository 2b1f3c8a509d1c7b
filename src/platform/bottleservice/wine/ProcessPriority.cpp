#include "bottleservice/wine/ProcessPriority.h"

#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

namespace {

// Of linux/ioprio.h, which is not in the headers of older systems.
constexpr int IoWhoProcess = 1;
constexpr int IoClassShift = 13;
constexpr int IoClassNone = 0;
constexpr int IoClassIdle = 3;

constexpr int LowestNice = 19;
constexpr rlim_t LimitForOrdinaryNice = 20;  // 20 less the nice value, getrlimit(2)
constexpr int NiceCapability = 23;           // CAP_SYS_NICE

bool setIoClass(pid_t thread, int ioClass) {
    return syscall(SYS_ioprio_set, IoWhoProcess, thread, ioClass << IoClassShift) == 0;
}

bool setPolicy(pid_t thread, int policy) {
    const sched_param parameters = {};
    return sched_setscheduler(thread, policy, &parameters) == 0;
}

bool hasNiceCapability() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("CapEff:"))
            return line.mid(7).trimmed().toULongLong(nullptr, 16) >> NiceCapability & 1;
    }
    return false;
}

}  // namespace

bool ProcessPriority::canRaise() {
    rlimit limit = {};
    return (getrlimit(RLIMIT_NICE, &limit) == 0 && limit.rlim_cur >= LimitForOrdinaryNice) ||
           hasNiceCapability();
}

void ProcessPriority::lowerSelf(bool withNice) {
    setIoClass(0, IoClassIdle);
    setPolicy(0, SCHED_BATCH);
    if (withNice)
        setpriority(PRIO_PROCESS, 0, LowestNice);
}

void ProcessPriority::raise(pid_t pid) {
    const QStringList threads =
        QDir(QString("/proc/%1/task").arg(pid)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : threads) {
        const pid_t thread = name.toInt();
        setpriority(PRIO_PROCESS, id_t(thread), 0);
        setPolicy(thread, SCHED_OTHER);
        setIoClass(thread, IoClassNone);
    }
}
