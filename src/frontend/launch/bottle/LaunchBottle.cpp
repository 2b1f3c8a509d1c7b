#include "launch/bottle/LaunchBottle.h"

#include <QDebug>
#include <QPointer>

#include "backend/BottlesConfig.h"

void LaunchBottle::setName(const QString& name) {
    if (name != m_name)
        m_record.reset();
    m_name = name;
}

void LaunchBottle::withRecord(QObject* context, const std::function<void(const QJsonObject&)>& take) {
    if (m_record) {
        take(*m_record);
        return;
    }
    const QPointer<LaunchBottle> bottle = this;
    BottlesConfig::instance()->watchBottle(m_name, context, [bottle, take](const BusResult& answer) {
        if (!answer.ok)
            qWarning("Failed to fetch bottles config.");
        const QJsonObject record = answer.object();
        if (bottle && answer.ok)
            bottle->setRecord(record);
        take(record);
    });
}
