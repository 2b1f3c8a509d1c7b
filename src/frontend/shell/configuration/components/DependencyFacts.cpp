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
    forgetAll();
}

void DependencyFacts::forget(const QStringList& names) {
    for (const QString& name : names) {
        m_current.remove(name);
        m_asked.remove(name);
    }
}

void DependencyFacts::forgetAll() {
    m_current.clear();
    m_asked.clear();
}

void DependencyFacts::fetch(const QStringList& names) {
    QStringList wanted;
    for (const QString& name : names) {
        if (!m_current.contains(name) && !m_asked.contains(name))
            wanted += name;
    }
    for (int i = 0; i < wanted.size(); i += NamesPerQuestion)
        ask(wanted.mid(i, NamesPerQuestion));
}

void DependencyFacts::ask(const QStringList& names) {
    const int number = ++m_questions;
    for (const QString& name : names)
        m_asked.insert(name, number);
    const auto onAnswer = [this, names, number](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "nothing is known about the components" << answer.errorMessage;
        QStringList described;
        for (const OfferedComponent& component : OfferedComponent::read(answer.array())) {
            if (m_asked.value(component.name) != number)
                continue;
            m_facts.insert(component.name, component);
            m_current.insert(component.name);
            described += component.name;
        }
        for (const QString& name : names) {
            if (m_asked.value(name) == number)
                m_asked.remove(name);
        }
        Q_EMIT changed(described);
    };
    BottleRepair::instance()->describeDependencies(m_bottle, names, this, onAnswer);
}
