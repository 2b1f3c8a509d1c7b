#include "packaging/start/BottleProgress.h"

#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>

namespace {

constexpr int LongestLine = 4096;
const QByteArray Prefix("::progress:: ");

}  // namespace

BottleProgress::BottleProgress(int fd, QObject* parent)
    : QObject(parent), m_fd(fd), m_notifier(new QSocketNotifier(fd, QSocketNotifier::Read, this)) {
    connect(m_notifier, &QSocketNotifier::activated, this, &BottleProgress::read);
}

void BottleProgress::read() {
    char buffer[LongestLine];
    const ssize_t size = ::read(m_fd, buffer, sizeof buffer);
    if (size < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (size <= 0) {
        m_notifier->setEnabled(false);
        Q_EMIT ended();
        return;
    }
    QList<QByteArray> lines = (m_rest + QByteArray(buffer, static_cast<int>(size))).split('\n');
    m_rest = lines.takeLast().left(LongestLine);
    for (const QByteArray& line : lines) {
        bool isNumber = false;
        const double percent = line.startsWith(Prefix) ? line.mid(Prefix.size()).toDouble(&isNumber) : 0;
        if (isNumber)
            Q_EMIT progress(percent);
    }
}
