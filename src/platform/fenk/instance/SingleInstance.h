#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

#include "fenk/system/OwnedFd.h"

namespace Fenk {

class SingleInstanceServer;

/// Allows one process per user and key, and passes the arguments of every later process to it. Used by
/// Application before the event loop starts.
///
/// A locked file in the runtime directory decides which process is first; the kernel releases the lock of a
/// killed process. The socket beside it only transfers arguments. Arguments that arrive before the event loop
/// runs stay in the socket; newProcessInstance is emitted from the event loop only. Connections from other
/// users are rejected.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Claim {
        First,        ///< this process is the first; it listens from now on
        Delivered,    ///< the running process has confirmed the arguments
        Unreachable,  ///< another process runs but did not confirm in time; a warning is logged
    };

    static constexpr int DefaultTimeoutMs = 5000;

    /// `runtimeDirectory` is for tests; empty: XDG_RUNTIME_DIR or a private directory of this user.
    explicit SingleInstance(const QString& key, const QString& runtimeDirectory = {},
                            QObject* parent = nullptr);
    ~SingleInstance() override;

    /// Blocks for at most timeoutMs. Without a usable runtime directory returns First and logs a warning: two
    /// instances are better than none.
    Claim claim(const QStringList& arguments, int timeoutMs = DefaultTimeoutMs);

    /// Makes arguments usable for a process in another directory: names of files that exist below `directory`
    /// become absolute. The first argument (the program), options and URLs stay unchanged.
    static QStringList withAbsoluteFiles(QStringList arguments, const QString& directory);

    QString socketPath() const;
    QString lockPath() const;

Q_SIGNALS:
    void newProcessInstance(qint64 pid, const QStringList& arguments);

private:
    bool tryLock();
    Claim listen();

    QString m_directory;
    QString m_name;
    OwnedFd m_lock;
    std::unique_ptr<SingleInstanceServer> m_server;
};

}  // namespace Fenk
