#pragma once

#include <QCoreApplication>
#include <QHash>
#include <QJsonObject>
#include <QStringList>

/// How one component of a bottle stands.
struct DependencyState {
    Q_DECLARE_TR_FUNCTIONS(DependencyState)
public:
    enum class Phase { Idle, Waiting, Downloading, Installing, Failed };
    /// What the user can do with it; the first two as rows have them.
    enum Action { NoAction = 0, Install = 1, Reinstall = 2, Cancel = 3 };

    Phase phase = Phase::Idle;
    bool isInstalled = false;
    quint64 received = 0;  ///< bytes
    quint64 total = 0;     ///< 0 while it is not known
    QString reason;        ///< of the failure; for the user, may be empty
    QString description;   ///< what the service says about its work, in its words; may be empty
    int percent = -1;      ///< of the whole, never less than before; -1 while nothing is known

    bool isUnderWay() const { return phase != Phase::Idle && phase != Phase::Failed; }
    Action action() const;
    /// At the right edge of the row; empty where it can be installed and nothing has happened.
    QString text() const;
};

/// The components of one bottle: which are installed, under way or failed, and in which order those under way
/// are installed. A plain value that is told what happens. Names are those of the catalogue; of a component
/// that is not under way only the end counts, since somebody else may have asked for it.
class DependencyStates {
public:
    DependencyState of(const QString& name) const { return m_states.value(name); }
    /// The first of those under way, or empty.
    QString current() const { return m_queue.value(0); }
    const QStringList& queue() const { return m_queue; }
    /// The service has told that it is this one's turn.
    bool isAtWork(const QString& name) const;

    /// The bottle has these; what is under way, or has failed, stays. Returns the names that changed.
    QStringList readInstalled(const QStringList& names);
    /// What the service is installing, and then what waits, whoever asked for it. Returns the new names.
    QStringList adopt(const QStringList& queue);

    // These return whether anything has changed.
    bool request(const QString& name);
    bool download(const QString& name, quint64 received, quint64 total);
    bool installing(const QString& name);
    /// It is being worked on, as the service says.
    bool describe(const QString& name, const QString& description);
    /// The steps of the installation, which come after the downloads and count as much as these.
    bool step(const QString& name, int done, int total);
    bool fail(const QString& name, const QString& reason);
    /// It is not installed after all, and that is no failure: the user wanted it so.
    bool withdraw(const QString& name);
    /// Takes the service's result and returns the names that changed; others may have come with it.
    QStringList done(const QString& name, const QJsonObject& result);

private:
    void leave(const QString& name, DependencyState::Phase phase, const QString& reason = {});
    bool enter(const QString& name);

    QHash<QString, DependencyState> m_states;
    QStringList m_queue;
};
