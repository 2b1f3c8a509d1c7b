#include "feedback/client/BottleQuery.h"

#include <QDebug>
#include <QTimer>

#include "backend/BottlesConfig.h"

void BottleQuery::ask(const QString& bottleName, QObject* context,
                      const std::function<void(const BusResult&)>& handler, int limitMs) {
    auto* timer = new QTimer(context);
    timer->setSingleShot(true);
    const auto end = [timer, handler](const BusResult& result) {
        if (!timer->isActive())
            return;  // it was too late
        timer->stop();
        timer->deleteLater();
        handler(result);
    };
    QObject::connect(timer, &QTimer::timeout, context, [timer, handler, bottleName] {
        qWarning().noquote() << "the background service does not answer; without" << bottleName;
        timer->deleteLater();
        BusResult late;
        late.timedOut = true;
        handler(late);
    });
    timer->start(limitMs);
    BottlesConfig::instance()->watchBottle(bottleName, timer, end);
}
