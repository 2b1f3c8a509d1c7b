#include "bottleservice/wine/ProcessEnd.h"

#include <sys/syscall.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>

#include <QFile>
#include <QSocketNotifier>
#include <QTimer>

namespace {

constexpr int PollMs = 500;
constexpr int StartTimeField = 19;  // counted from the end of the name, which may contain blanks

}  // namespace

ProcessEnd::ProcessEnd(pid_t pid, QObject* parent) : QObject(parent) {
    m_fd = int(syscall(SYS_pidfd_open, pid, 0));
    if (m_fd >= 0) {
        auto* notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
            notifier->setEnabled(false);
            Q_EMIT ended();
        });
        return;
    }
    auto* poll = new QTimer(this);
    connect(poll, &QTimer::timeout, this, [this, poll, pid] {
        if (::kill(pid, 0) == 0 || errno == EPERM)
            return;
        poll->stop();
        Q_EMIT ended();
    });
    poll->start(errno == ESRCH ? 0 : PollMs);
}

ProcessEnd::~ProcessEnd() {
    if (m_fd >= 0)
        close(m_fd);
}

QString ProcessEnd::startTime(pid_t pid) {
    QFile file(QString("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = file.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    // A zombie has ended, too.
    if (fields.first() == "Z" || fields.first() == "X")
        return {};
    return QString::fromLatin1(fields.value(StartTimeField));
}
