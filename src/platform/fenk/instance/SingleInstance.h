#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

#include "fenk/system/OwnedFd.h"

namespace Fenk {

class SingleInstanceServer;

/// Lets one process per user and key run and hands the arguments of every later one over to it. Used by
/// Application before the event loop starts.
///
/// A locked file in the runtime directory decides who is first, so that a killed process never stands in the
/// way; the socket beside it only carries arguments. What arrives before the event loop runs waits in the
/// socket, and newProcessInstance is only emitted from the event loop. Only processes of the same user are
/// heard.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Claim {
        First,        ///< this process is the one; it listens from now on
        Delivered,    ///< the running process has confirmed the arguments
        Unreachable,  ///< another process runs but did not confirm in time; a warning has been logged
    };

    static constexpr int DefaultTimeoutMs = 5000;

    /// runtimeDirectory is for tests; empty picks XDG_RUNTIME_DIR or a private directory of this user.
    explicit SingleInstance(const QString& key, const QString& runtimeDirectory = {},
                            QObject* parent = nullptr);
    ~SingleInstance() override;

    /// Blocks for at most timeoutMs milliseconds. Without a usable runtime directory the answer is First, and
    /// a warning is logged: better two instances than none.
    Claim claim(const QStringList& arguments, int timeoutMs = DefaultTimeoutMs);

    /// Arguments as another process must see them: names of files that exist below directory become absolute.
    /// The first argument (the program), options and urls stay as they are.
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
