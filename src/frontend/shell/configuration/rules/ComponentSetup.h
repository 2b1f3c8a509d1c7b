#pragma once

#include <QJsonObject>
#include <QString>

/// The change of one component of a bottle, from the user's choice to its end. A plain value that is told
/// what happens; names are those of the wire, where "-" is a component that is off. What is told of another
/// component than the one under way is ignored, and so is what comes twice.
class ComponentSetup {
public:
    enum class Phase {
        Idle,
        Preparing,  ///< what it needs is made ready; the service has not been asked
        Asked,      ///< the service has been asked, and has not said anything yet
        Waiting,    ///< for the download
        Downloading,
        SettingUp,
        Failed  ///< shown until the user has seen it
    };

    /// The value in use, with nothing under way.
    void setGood(const QString& value);
    QString good() const { return m_good; }
    /// The value that the bottle has now; what is under way, or has failed, stays.
    void read(const QString& value) { m_good = value; }

    void choose(const QString& value);
    /// The user's choice, which choose() follows.
    void prepare(const QString& value);
    /// Takes over what the service was doing before this window was there, by its answer to
    /// getInstallingComponents. False when that is nothing.
    bool adopt(const QJsonObject& installing);

    // These are what the service tells. They return whether anything has changed.
    bool waiting(const QString& name);
    bool progress(const QString& name, quint64 received, quint64 total);
    bool started(const QString& name);
    /// Programs run in the bottle: the service has stopped, and can be asked once more.
    bool blocked(const QString& name);
    /// Also for a change that somebody else has asked for.
    bool done(const QString& name, bool isGood, const QString& reason);
    /// The call itself has failed, or the service has gone.
    bool fail(const QString& reason);

    /// The user has cancelled it, or has seen the failure.
    void leave();

    Phase phase() const { return m_phase; }
    bool isUnderWay() const { return m_phase != Phase::Idle && m_phase != Phase::Failed; }
    QString name() const { return m_name; }      ///< of the component under way, or that has failed
    QString reason() const { return m_reason; }  ///< of the failure; for the user, may be empty
    /// 0 to 100; -1 while the size is unknown.
    int percent() const { return m_percent; }
    QString text() const;

    static QString valueOf(const QString& name) { return name == QLatin1String("-") ? QString() : name; }
    static QString nameOf(const QString& value) { return value.isEmpty() ? QString("-") : value; }
    /// For the user.
    static QString shown(const QString& value);

private:
    bool isOurs(const QString& name) const {
        return isUnderWay() && m_phase != Phase::Preparing && name == m_name;
    }
    bool enter(Phase phase);

    Phase m_phase = Phase::Idle;
    QString m_good;
    QString m_name;
    QString m_reason;
    int m_percent = -1;
};
