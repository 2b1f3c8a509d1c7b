#pragma once

#include <QHash>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QSet>

#include "backend/PendingWork.h"
#include "fenk/system/Singleton.h"
#include "programs/Program.h"

class AppItemWidget;
class WineLauncher;

/// What goes on with programs, whether or not something shows it: starts those that are started from here and
/// follows them to their end, and knows which applications are being set up. ProgramRuns knows what runs;
/// this tells the items and the store's cards of it that it watches, by the program's id. GUI thread only.
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
    static bool isRunning(const ProgramRef& ref);
    /// In any bottle.
    static bool isRunning(const QString& uuid);

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
    /// A start from here, as long as its launch script lives.
    struct Launch {
        QPointer<WineLauncher> launcher;
        PendingWork::Hold waiting;  ///< while its bottle's record is asked for
        bool isTimed = true;        ///< until its first window, or until that has taken too long
        bool isUp = false;          ///< with a window, or for as long as one is waited for
        bool isStopped = false;     ///< by the user
    };

    AppItemWidgetStateManager();
    /// `sentence` says why the program was never reached; empty when it was.
    void onLauncherEnded(WineLauncher* launcher, const ProgramRef& ref, const QString& sentence);
    void onProgramExited(const QString& uuid);
    void onLaunchResult(const QString& uuid, bool successed);
    void endTiming(const ProgramRef& ref, bool report);
    void forget(const ProgramRef& ref);
    /// Whether the program has failed, found out in the background.
    void checkEnd(const ProgramRef& ref);
    void tell(const ProgramRef& ref, bool running);

    QSet<QString> m_setups;
    PendingWork::Hold m_setupHold;
    QHash<ProgramRef, Launch> m_launches;
    QHash<QString, QString> m_timedBottles;  ///< by the id of a program that was started here
    QMultiHash<QString, QPointer<AppItemWidget>> m_items;
    QMultiHash<QString, QPersistentModelIndex> m_cards;
};
