#pragma once

#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>

class ExeFileRunner;
class Refusals;

namespace Fenk {
class Application;
class Dialog;
}  // namespace Fenk

/// Starts launches and owns them until they have ended, at most one a bottle. Owned by the application
/// object; GUI thread. The user is told why a start is refused, by Refusals or because its bottle is in use.
class RunningLaunches : public QObject {
    Q_OBJECT
public:
    RunningLaunches(Fenk::Application* application, Refusals* refusals);

    /// Starts a file, or with `debug` opens it in the configuration window.
    void openFile(const QString& path, bool debug);
    /// Starts a stored program. 0 when it is under way or its bottle is in use, otherwise not 0.
    int openProgram(const QString& bottle, const QString& uuid);
    /// Offers to install the components; without any the program is started. Results as for openProgram().
    int repairProgram(const QString& bottle, const QString& uuid, const QStringList& components);
    void add(ExeFileRunner* runner);
    /// At the end of the process: deletes the launches without a record. The Windows programs go on.
    void clear();
    /// Ends the launch of a bottle that was deleted, if there is one.
    void endDeleted(const QString& bottle);

    bool contains(const QString& bottle) const {
        return m_runners.contains(bottle) || m_opening.contains(bottle);
    }
    bool isEmpty() const { return m_runners.isEmpty() && m_opening.isEmpty(); }
    /// Of those that are not empty.
    QString firstBottle() const { return m_runners.isEmpty() ? *m_opening.cbegin() : m_runners.firstKey(); }
    /// Whether any launch has begun since the process was started.
    bool hasLaunched() const { return m_hasLaunched; }

Q_SIGNALS:
    /// A launch has ended and is no longer counted.
    void ended();

private:
    void onRunnerFinished(ExeFileRunner* runner);
    void showAlreadyRunning(const QString& displayName);

    Fenk::Application* m_application;
    Refusals* m_refusals;
    QMap<QString, ExeFileRunner*> m_runners;                  ///< by bottle
    QSet<QString> m_opening;                                  ///< bottles whose stored program is looked up
    QHash<QString, QPointer<Fenk::Dialog>> m_runningDialogs;  ///< by the program's name
    bool m_hasLaunched = false;
};
