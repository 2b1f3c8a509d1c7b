#pragma once

#include <QHash>
#include <QObject>

#include "launch/repair/RepairOffer.h"

/// What installations into one bottle would bring, as the service tells it: each component is asked for once,
/// until it is forgotten. GUI thread.
class DependencyFacts : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Another bottle starts with nothing known.
    void setBottle(const QString& bottle);
    /// Asks for those that are not known; changed() follows. A failure is logged.
    void fetch(const QStringList& names);
    void forget(const QStringList& names);

    bool has(const QString& name) const { return m_facts.contains(name); }
    OfferedComponent of(const QString& name) const { return m_facts.value(name); }

Q_SIGNALS:
    void changed(const QStringList& names);

private:
    QString m_bottle;
    QHash<QString, OfferedComponent> m_facts;
};
