#include "launch/run/LinkCollector.h"

#include <QDebug>

#include "backend/BottlesConfig.h"
#include "launch/bottle/LaunchBottle.h"

namespace {

constexpr int LimitMs = 10000;

}  // namespace

LinkCollector::LinkCollector(LaunchBottle* bottle, QObject* parent) : QObject(parent), m_bottle(bottle) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(LimitMs);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        qWarning() << "no answer about the links of" << m_bottle->name();
        Q_EMIT done();
    });
}

void LinkCollector::collectInBackground() {
    BottlesConfig::instance()->watchApplicationLinks(m_bottle->name(), m_since, this,
                                                     [this](const BusResult& answer) { onAnswer(answer); });
}

void LinkCollector::collect() {
    m_limit.start();
    const int request = ++m_request;
    BottlesConfig::instance()->watchApplicationLinks(
        m_bottle->name(), m_since, this, [this, request](const BusResult& answer) {
            if (!answer.ok)
                qWarning().noquote() << "no links of" << m_bottle->name() << answer.errorMessage;
            onAnswer(answer);
            if (request != m_request || !m_limit.isActive())
                return;
            m_limit.stop();
            Q_EMIT done();
        });
}

void LinkCollector::onAnswer(const BusResult& answer) {
    if (!answer.array().isEmpty())
        m_bottle->setChanged();
}
