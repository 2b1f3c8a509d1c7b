#include "fenk/log/StandardError.h"

#include <pthread.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace Fenk {

void writeToStandardError(const QByteArray& bytes) {
    sigset_t pipeSignal;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    sigpending(&pending);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &before);

    const ssize_t written = ::write(STDERR_FILENO, bytes.constData(), size_t(bytes.size()));
    if (written < 0 && errno == EPIPE && !sigismember(&pending, SIGPIPE)) {
        const timespec now = {0, 0};
        while (sigtimedwait(&pipeSignal, nullptr, &now) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace Fenk
