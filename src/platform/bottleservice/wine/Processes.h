#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <vector>

/// Finds the processes of a bottle by the variables of their environment. As a rule only executables of Wine
/// itself (and the emulators that run it) count: a shell in which somebody exported WINEPREFIX, or a browser
/// that a Windows program has opened, must never be killed. Reads /proc, which takes milliseconds.
class Processes {
public:
    struct Entry {
        pid_t pid = 0;
        QByteArray executable;   ///< base name of /proc/<pid>/exe
        QByteArray commandLine;  ///< arguments, divided by null bytes
        QByteArray prefix;       ///< WINEPREFIX
        QByteArray program;      ///< _CXB_WINE_PROGRAM_UUID
        QByteArray file = {};    ///< _CXB_WINE_PROGRAM_FILE, of programs that were started without an id
    };

    explicit Processes(const QString& procDir = "/proc") : m_procDir(procDir) {}

    enum class Kind {
        Wine,
        Any  ///< also native programs that were started from Wine; for a prefix that is only the service's
    };

    std::vector<Entry> all(Kind kind = Kind::Wine) const;
    std::vector<Entry> ofBottle(const QString& bottlePath, Kind kind = Kind::Wine) const;

    /// The processes that carry the program's id. Those that serve the whole bottle are left out; they carry
    /// the id of the program that started first.
    std::vector<Entry> ofProgram(const QString& bottlePath, const QString& programId) const;

    static QHash<QByteArray, QByteArray> parseEnvironment(const QByteArray& block);
    static bool isWineExecutable(const QByteArray& baseName);
    static bool servesWholeBottle(const Entry& entry);

    /// Signals each; processes that are gone by now are no error.
    static void signal(const std::vector<Entry>& entries, int signal);

private:
    QString m_procDir;
};
