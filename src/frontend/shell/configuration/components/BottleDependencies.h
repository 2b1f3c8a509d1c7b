#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <memory>

#include "shell/configuration/components/DependencyStates.h"

class DependencyFacts;
class QJsonObject;
struct BusResult;

/// The components of one bottle behind the components page: asks the service for what the user wants,
/// follows its work, whoever asked for it, and knows what an installation would bring. The service installs
/// one at a time into a bottle and goes on when the window is closed. GUI thread; waits for nothing.
class BottleDependencies : public QObject {
    Q_OBJECT
public:
    explicit BottleDependencies(QObject* parent = nullptr);

    /// Another bottle starts with nothing known. What is under way in the old one goes on.
    void setBottle(const QString& bottle);
    const QString& bottle() const { return m_bottle; }
    /// The components that the bottle's record names. Asks the service what it is installing.
    void load(const QStringList& installed);

    const DependencyStates& states() const { return m_states; }
    DependencyState state(const QString& name) const { return m_states.of(name); }

    void install(const QString& name);
    void reinstall(const QString& name);
    /// Takes one back, whether it runs or waits. It goes on where somebody else has asked for it, too.
    void cancel(const QString& name);
    /// Installs from a file that the user has got by hand, if the service takes it; refused() otherwise.
    void installFrom(const QString& path, const QString& name);
    /// The answer to programsRunning().
    void answerProgramsRunning(bool close);

    /// What the installations would bring.
    DependencyFacts* facts() const { return m_facts; }

Q_SIGNALS:
    void changed(const QString& name);
    /// Which one is being installed, how far, or how many wait.
    void queueChanged();
    /// Asked for now (downloading), or found under way.
    void startSetup(const QString& name, bool downloading);
    void setupDone();
    /// A chosen file is another one than is needed, or a cancel was not carried out; for the user.
    void refused(const QString& reason);
    /// Components can only be installed when these programs have been closed.
    void programsRunning(const QStringList& programs);

private:
    void followService();
    void request(const QString& name);
    void send(const QString& name);
    void onRefused(const QString& name, const BusResult& answer);
    void onInstalled(const QString& name, const QJsonObject& result);
    void onBusy(const QString& name, const QStringList& programs);
    void finish(const QString& name, const QStringList& changed);
    void withdraw(const QString& name);
    void onServiceLost();
    void onCancelled(const QString& name, int attempt, const BusResult& answer);
    void readQueue();
    void takeQueue(const QStringList& queue);
    void tell(const QStringList& names);
    bool isForeign(const QString& bottle, const QString& name);

    QString m_bottle;
    DependencyStates m_states;
    QSet<QString> m_cancelling;       ///< until the service has answered
    QHash<QString, bool> m_requests;  ///< of those under way that this window asked for: whether again
    QHash<QString, int> m_attempts;   ///< answers to older ones are ignored
    /// Refused because programs run: the user is asked, or they are being closed. Outlives this object until
    /// then.
    std::shared_ptr<QStringList> m_blocked = std::make_shared<QStringList>();
    DependencyFacts* m_facts;
    bool m_isReadingQueue = false;
    bool m_readsQueueAgain = false;
    int m_bottles = 0;  ///< answers for older ones are dropped
};
