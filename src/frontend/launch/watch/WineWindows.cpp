#include "launch/watch/WineWindows.h"

#include <unistd.h>

#include <QFile>
#include <climits>
#include <cstring>

#include "core/base/WineNames.h"

namespace {

constexpr int MinimumSide = 121;  // icons, splash dots and helper windows are smaller
constexpr int MaximumMapsLine = 8192;

constexpr int MaximumKnown = 4096;

QByteArray processFile(qint64 pid, const char* name) {
    return "/proc/" + QByteArray::number(pid) + '/' + name;
}

/// The path of the executable; empty without permission to read it.
QByteArray executableOf(qint64 pid) {
    char path[PATH_MAX];
    const ssize_t length = readlink(processFile(pid, "exe").constData(), path, sizeof path);
    return length > 0 ? QByteArray(path, int(length)) : QByteArray();
}

}  // namespace

/// Same result as "grep wine.*-preloader": one line contains both words in this order.
bool WineWindows::isWineProcess(qint64 pid) {
    QFile maps(QString::fromLatin1(processFile(pid, "maps")));
    if (!maps.open(QIODevice::ReadOnly))
        return false;
    char line[MaximumMapsLine];
    while (maps.readLine(line, sizeof line) > 0) {
        const char* word = std::strstr(line, "wine");
        if (word && std::strstr(word, "-preloader"))
            return true;
    }
    return false;
}

QMap<QByteArray, QByteArray> WineWindows::wineEnvironment(qint64 pid) {
    QFile file(QString::fromLatin1(processFile(pid, "environ")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QMap<QByteArray, QByteArray> found;
    for (const QByteArray& variable : file.readAll().split('\0')) {
        for (const QByteArray& key : {WineNames::winePrefixPrefix(), WineNames::programUuidPrefix()}) {
            if (variable.startsWith(key))
                found[key] = variable.mid(key.size());
        }
    }
    return found;
}

bool WineWindows::isKnownWineProcess(qint64 pid) {
    // Read before the map: if the program is replaced in between, it is checked again next time.
    const QByteArray executable = executableOf(pid);
    const auto known = m_known.constFind(pid);
    if (known != m_known.cend() && !executable.isEmpty() && known->executable == executable)
        return known->isWine;
    if (m_known.size() >= MaximumKnown)
        m_known.clear();
    const bool isWine = isWineProcess(pid);
    m_known.insert(pid, {executable, isWine});
    return isWine;
}

QMap<QByteArray, QByteArray> WineWindows::wineEnvironmentOfWindow(X11Desktop::Window window) {
    const qint64 pid = m_desktop.processOf(window);
    if (pid == 0 || !isKnownWineProcess(pid))
        return {};
    const QSize size = m_desktop.sizeOf(window);
    if (size.width() < MinimumSide || size.height() < MinimumSide)
        return {};
    return wineEnvironment(pid);
}
