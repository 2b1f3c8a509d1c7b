#pragma once

#include <QHash>
#include <QObject>
#include <QSet>

#include "launch/repair/RepairOffer.h"

/// What installations into one bottle would bring, as the service tells it: each component is asked for once,
/// until it is forgotten. What is forgotten is still shown until the service has answered anew. GUI thread.
class DependencyFacts : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// Another bottle starts with nothing known.
    void setBottle(const QString& bottle);
    /// Asks for those that are neither known nor asked for; changed() follows. A failure is logged.
    void fetch(const QStringList& names);
    void forget(const QStringList& names);
    void forgetAll();

    bool has(const QString& name) const { return m_facts.contains(name); }
    OfferedComponent of(const QString& name) const { return m_facts.value(name); }

Q_SIGNALS:
    void changed(const QStringList& names);

private:
    void ask(const QStringList& names);

    QString m_bottle;
    QHash<QString, OfferedComponent> m_facts;
    QSet<QString> m_current;      ///< those of them that are not forgotten
    QHash<QString, int> m_asked;  ///< number of the question; the answer to an older one is dropped
    int m_questions = 0;
};
