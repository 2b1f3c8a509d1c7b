#pragma once

#include <QJsonObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "shell/configuration/rules/ComponentOffer.h"
#include "shell/configuration/rules/ComponentSetup.h"
#include "shell/configuration/rules/SettingRules.h"

struct BusResult;

/// The settings of one bottle behind the configuration window: reads the record, sends each change to the
/// service at once and follows the components that it sets up. Shown values are those of the last change; a
/// refused change is taken back. Holds nothing that the bottle does not. GUI thread; waits for nothing.
class BottleSettings : public QObject {
    Q_OBJECT
public:
    enum class State { Loading, Ready, Failed };

    BottleSettings(const QString& bottle, QObject* parent);
    /// Sends a DPI that is still held back, and choices that were kept.
    ~BottleSettings() override;

    /// Reads the record again. Also done by itself when the service has left the bus or has come back.
    void load();
    /// What load() does first; it calls `then` once, in the GUI thread.
    using ReadBefore = std::function<void(const std::function<void()>& then)>;
    void setReadBefore(const ReadBefore& read) { m_readBefore = read; }

    State state() const { return m_state; }
    QString errorText() const { return m_errorText; }  ///< for State::Failed
    const QString& bottle() const { return m_bottle; }
    const QJsonObject& record() const { return m_record; }
    const SettingValues& values() const { return m_values; }
    SettingRowStates rowStates() const { return SettingRules::rowStates(m_values, m_ntSync); }
    const ComponentSetup& setup(Setting component) const { return m_setups[size_t(component)]; }
    ComponentOffer offer(Setting component) const;

    /// What the user does. The DPI is sent 600 ms after its last change, or before the next other one. While
    /// the record is read again, choices are kept until it has come.
    void choose(Setting setting, const QVariant& value);
    /// The same when `prepare` has called what it is given. Of several choices the last one counts.
    using Preparation = std::function<void(QObject* context, const std::function<void()>& then)>;
    void chooseAfter(const Preparation& prepare, Setting component, const QString& value);
    void cancelSetup(Setting component);
    /// The answer to programsRunning().
    void answerProgramsRunning(Setting component, bool close);
    /// Takes back the last change.
    void undo();
    bool canUndo() const { return !m_undo.sent.isEmpty(); }

    /// Calls `then` once the service has answered for every choice so far, whatever it answered; components,
    /// which take their time, are not waited for. At once when nothing is open. Never when the context goes.
    void whenSent(QObject* context, const std::function<void()>& then);

Q_SIGNALS:
    void stateChanged();
    /// Values, rows, lists or what is under way.
    void changed();
    /// A change has been sent that undo() takes back.
    void undoable(Setting setting);
    /// A change was not taken; for the user.
    void refused(const QString& errorText);
    /// The component can only be changed when these programs have been closed.
    void programsRunning(Setting component, const QStringList& programs);
    /// Another runner is shown than before.
    void runnerChanged();
    /// The service has answered for every choice.
    void sent();

private:
    static constexpr Setting Components[] = {Setting::Dxvk, Setting::Vkd3d, Setting::Runner};

    struct Undo {
        SettingValues before;
        QVector<Setting> sent;
    };

    void onRecord(const BusResult& result);
    void readInstalling();
    void setState(State state, const QString& errorText = {});
    void announce();
    void keep(Setting setting, const QVariant& value);
    void chooseKept();
    void offerUndo(Setting setting, const Undo& undo);
    void flushDpi();
    bool isSent() const { return m_state != State::Loading && m_openSends == 0; }
    void send(Setting setting, const QVariant& value);
    void takeBack(Setting setting, const BusResult& answer);
    void sendComponent(Setting component);
    void sendDpi();
    void sendAtEnd(Setting setting, const QVariant& value) const;
    void followService();
    void onSetupDone(const QString& kind, const QString& name, const QString& result);
    void onServiceLost();
    bool leavePreparation(Setting component);
    void cancelGraphics();
    void restoreRenderer();
    /// Tells the setup of that kind; shows its value when the change has ended.
    void tell(const QString& kind, const std::function<bool(ComponentSetup*)>& event);
    void checkNtSync();
    void checkGraphics();
    ComponentSetup& setupOf(Setting component) { return m_setups[size_t(component)]; }

    const QString m_bottle;
    State m_state = State::Loading;
    QString m_errorText;
    QJsonObject m_record;
    SettingValues m_values;
    std::array<ComponentSetup, size_t(SettingCount)> m_setups;  ///< used for components only
    GraphicsFacts m_graphics;
    KernelModule m_ntSync = KernelModule::NotAsked;
    std::optional<QString> m_shownRunner;  ///< unset before the first record
    QVector<std::pair<Setting, QVariant>> m_kept;
    SettingValues m_beforeKept;
    QString m_rendererBefore;  ///< a layer that is not set up yet has changed it
    ReadBefore m_readBefore;
    int m_loads = 0;  ///< answers to older ones are dropped
    int m_openSends = 0;
    int m_ntSyncChecks = 0;
    int m_preparations = 0;
    /// What the service is to set up; outlives this object until programs have been closed for it.
    std::array<std::shared_ptr<QString>, size_t(SettingCount)> m_wanted;
    QTimer m_dpiTimer;
    Undo m_dpiUndo;                                        ///< while the DPI is held back
    Undo m_undo;                                           ///< of what undoable() has told
    std::array<Undo, size_t(SettingCount)> m_waitingUndo;  ///< of components, until they are set up
};
