#include "launch/run/LinkCollector.h"

#include <QDebug>

#include "backend/BottlesConfig.h"

namespace {

constexpr int LimitMs = 10000;

}  // namespace

LinkCollector::LinkCollector(QObject* parent) : QObject(parent) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(LimitMs);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        qWarning() << "no answer about the links of" << m_bottle;
        Q_EMIT done();
    });
}

void LinkCollector::collectInBackground(const QString& bottle) {
    BottlesConfig::instance()->watchApplicationLinks(bottle, m_since, this, [](const BusResult&) {});
}

void LinkCollector::collect(const QString& bottle) {
    m_bottle = bottle;
    m_limit.start();
    const int request = ++m_request;
    BottlesConfig::instance()->watchApplicationLinks(
        bottle, m_since, this, [this, bottle, request](const BusResult& answer) {
            if (!answer.ok)
                qWarning().noquote() << "no links of" << bottle << answer.errorMessage;
            if (request != m_request || !m_limit.isActive())
                return;
            m_limit.stop();
            Q_EMIT done();
        });
}
