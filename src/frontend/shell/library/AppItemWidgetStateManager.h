#pragma once

#include <QHash>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QSet>

#include "backend/PendingWork.h"
#include "fenk/Singleton.h"
#include "shell/library/Program.h"

class AppItemWidget;
class WineLauncher;

/// What goes on with programs, whether or not something shows it: which ones run, started from here, and
/// which applications are being set up. Tells the items and the store's cards that it watches, by the
/// program's id. GUI thread only.
class AppItemWidgetStateManager : public QObject, public Fenk::Singleton<AppItemWidgetStateManager> {
    Q_OBJECT
    friend class Fenk::Singleton<AppItemWidgetStateManager>;

public:
    // Applications being set up keep the process alive.
    void startSetup(const QString& appId);
    bool isSettingUp() const { return !m_setups.isEmpty(); }
    bool isSettingUp(const QString& appId) const { return m_setups.contains(appId); }

    void watchItem(const QString& uuid, AppItemWidget* item);
    void watchCard(const QString& uuid, const QModelIndex& card);

    /// Nothing happens to one that runs. Without anybody's watch over it: what has been started goes on when
    /// this process ends.
    void start(const Program& program, bool inTerminal);
    /// Only asks; the program's end is told when it comes.
    void stop(const ProgramRef& ref);
    bool isRunning(const QString& uuid) const { return m_running.contains(uuid); }

Q_SIGNALS:
    void signalAppSetuping(const QString& appId);
    void setupDone(const QString& appId);
    void runningChanged(const QString& uuid, bool running);
    void cardChanged(const QModelIndex& card);
    /// By the bottle; what it has must be asked for.
    void ratingRefused();
    /// What was asked for a program came to nothing: a sentence for the user.
    void failed(const QString& uuid, const QString& sentence);

public Q_SLOTS:
    void onSetupingYmlDone(const QString& appInfoId, const QString& yamlFile, bool needRemove);
    void onProgramUuidDeleted(const QString& bottlesName, const QString& programUuid);

private:
    struct Run {
        QString bottle;
        QPointer<WineLauncher> launcher;
        PendingWork::Hold waiting;  ///< while its bottle's record is asked for
        bool isTimed = true;        ///< until its first window, or until that has taken too long
    };

    AppItemWidgetStateManager();
    /// `sentence` says why the program was never reached; empty when it was.
    void onLauncherEnded(WineLauncher* launcher, const ProgramRef& ref, const QString& sentence);
    void onProgramExited(const QString& uuid);
    void endTiming(const QString& uuid, bool report);
    void setIdle(const QString& uuid, bool lookForRepair);
    void tell(const QString& uuid, bool running);

    QSet<QString> m_setups;
    PendingWork::Hold m_setupHold;
    QHash<QString, Run> m_running;
    QMultiHash<QString, QPointer<AppItemWidget>> m_items;
    QMultiHash<QString, QPersistentModelIndex> m_cards;
};
