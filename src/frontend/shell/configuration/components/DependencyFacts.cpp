#include "shell/configuration/components/DependencyFacts.h"

#include <QDebug>
#include <QJsonArray>

#include "backend/BottleRepair.h"

namespace {

constexpr int NamesPerQuestion = 100;

}  // namespace

void DependencyFacts::setBottle(const QString& bottle) {
    m_bottle = bottle;
    m_facts.clear();
}

void DependencyFacts::forget(const QStringList& names) {
    for (const QString& name : names)
        m_facts.remove(name);
}

void DependencyFacts::fetch(const QStringList& names) {
    QStringList wanted;
    for (const QString& name : names) {
        if (!has(name))
            wanted += name;
    }
    const auto onAnswer = [this, bottle = m_bottle](const BusResult& answer) {
        if (bottle != m_bottle)
            return;
        if (!answer.ok)
            qWarning().noquote() << "nothing is known about the components" << answer.errorMessage;
        QStringList described;
        for (const OfferedComponent& component : OfferedComponent::read(answer.array())) {
            m_facts.insert(component.name, component);
            described += component.name;
        }
        Q_EMIT changed(described);
    };
    for (int i = 0; i < wanted.size(); i += NamesPerQuestion)
        BottleRepair::instance()->describeDependencies(m_bottle, wanted.mid(i, NamesPerQuestion), this,
                                                       onAnswer);
}
