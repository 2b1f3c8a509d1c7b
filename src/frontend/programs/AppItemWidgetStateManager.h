#pragma once

#include <QHash>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>
#include <functional>

#include "fenk/system/Singleton.h"
#include "programs/AppSetups.h"
#include "programs/Program.h"

/// Tells whatever shows a program of changes of its state: the items of the library and the cards of the
/// store register here, by the program's id. Also knows which applications are being set up. What runs is
/// known by ProgramRuns, what was started from here by ProgramStarts. One for the process; GUI thread only.
class AppItemWidgetStateManager : public QObject, public Fenk::Singleton<AppItemWidgetStateManager> {
    Q_OBJECT
    friend class Fenk::Singleton<AppItemWidgetStateManager>;

public:
    /// A set-up keeps the process alive until its onSetupingYmlDone().
    void startSetup(const QString& appId);
    bool isSettingUp() const { return !m_setups.isEmpty(); }
    bool isSettingUp(const QString& appId) const { return m_setups.contains(appId); }

    /// Calls `refresh` whenever the program has started, ended or failed, until the item is destroyed.
    void watchItem(const ProgramRef& ref, QObject* item, const std::function<void()>& refresh);
    /// Emits cardChanged() for the program in any bottle, until the index is invalid or the program deleted.
    void watchCard(const QString& uuid, const QModelIndex& card);

    void reportFailure(const QString& uuid, const QString& errorText) { Q_EMIT failed(uuid, errorText); }
    void reportRefusedRating(const Program& program);

Q_SIGNALS:
    void signalAppSetuping(const QString& appId);
    void setupDone(const QString& appId);
    void cardChanged(const QModelIndex& card);
    /// The bottle did not store a rating: the one that is shown is wrong.
    void ratingRefused();
    /// Something that the user asked for failed; the text is for the user.
    void failed(const QString& uuid, const QString& errorText);

public Q_SLOTS:
    /// Ends one set-up of the application; setupDone() comes with the last. Ignores an application that is
    /// not being set up.
    void onSetupingYmlDone(const QString& appInfoId, const QString& yamlFile, bool needRemove);
    void onProgramUuidDeleted(const QString& bottlesName, const QString& programUuid);

private:
    struct Item {
        ProgramRef ref;
        QPointer<QObject> object;
        std::function<void()> refresh;
    };

    AppItemWidgetStateManager();
    void notifyWatchers(const ProgramRef& ref);

    AppSetups m_setups;
    QMultiHash<QString, Item> m_items;                   ///< by the program's id
    QMultiHash<QString, QPersistentModelIndex> m_cards;  ///< by the program's id
};
