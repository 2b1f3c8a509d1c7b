#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>

#include "fenk/system/Singleton.h"

/// A bottle that was made from an installed package which has been removed since.
struct OrphanedBottle {
    QString package;             ///< its name
    QSet<QString> lostPrograms;  ///< ids of programs whose files have gone with it
    bool isBeingKept = false;    ///< the service makes it an ordinary bottle, which can take minutes
};

/// Which bottles are orphaned, as the background service says; empty until it has answered. Asks again when
/// the application becomes active, since packages come and go outside of it, but not within some seconds of
/// the last answer. A failed call is logged and changes nothing. One for the process; GUI thread only; no
/// call here waits.
class OrphanedBottles : public QObject, public Fenk::Singleton<OrphanedBottles> {
    Q_OBJECT
    friend class Fenk::Singleton<OrphanedBottles>;

public:
    using Bottles = QHash<QString, OrphanedBottle>;
    /// From the service's answer; entries without a bottle or package are left out.
    static Bottles parse(const QString& text);

    void load();
    /// Null for any other bottle.
    const OrphanedBottle* find(const QString& bottle) const;
    /// Makes it an ordinary bottle; not twice at once. A refusal is reported by
    /// AppItemWidgetStateManager::failed.
    void keep(const QString& bottle);

Q_SIGNALS:
    void changed();

private:
    OrphanedBottles();
    void forget(const QString& bottle);

    void markKept();

    Bottles m_bottles;
    QSet<QString> m_beingKept;
    int m_loads = 0;  ///< answers to older ones are dropped
    QElapsedTimer m_sinceAnswer;
};
