#include "programs/OrphanedBottles.h"

#include <QDebug>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "backend/BottleCleanUp.h"
#include "backend/BottlesConfig.h"
#include "programs/AppItemWidgetStateManager.h"

namespace {

constexpr int LongestName = 200;
constexpr int FreshMs = 10000;

}  // namespace

OrphanedBottles::OrphanedBottles() {
    connect(BottlesConfig::instance(), &BottlesConfig::bottles_deleted, this, &OrphanedBottles::forget);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive && m_sinceAnswer.isValid() && m_sinceAnswer.hasExpired(FreshMs))
            load();
    });
}

OrphanedBottles::Bottles OrphanedBottles::parse(const QString& text) {
    Bottles bottles;
    const QJsonArray entries = QJsonDocument::fromJson(text.toUtf8()).array();
    for (const QJsonValue& value : entries) {
        const QJsonObject entry = value.toObject();
        OrphanedBottle orphan{entry["package"].toString().left(LongestName).simplified(), {}};
        for (const QJsonValue& id : entry["lost"].toArray())
            orphan.lostPrograms.insert(id.toString());
        const QString bottle = entry["bottle"].toString();
        if (!bottle.isEmpty() && !orphan.package.isEmpty())
            bottles.insert(bottle, orphan);
    }
    return bottles;
}

void OrphanedBottles::load() {
    const auto onAnswer = [this, number = ++m_loads](const BusResult& result) {
        if (number != m_loads)
            return;
        m_sinceAnswer.start();
        if (!result.ok) {
            qWarning().noquote() << "cannot learn which packages were removed:" << result.errorMessage;
            return;
        }
        m_bottles = parse(result.text);
        markKept();
    };
    BottleCleanUp::instance()->bottlesOfRemovedPackages(this, onAnswer);
}

const OrphanedBottle* OrphanedBottles::find(const QString& bottle) const {
    const auto found = m_bottles.constFind(bottle);
    return found == m_bottles.constEnd() ? nullptr : &*found;
}

void OrphanedBottles::markKept() {
    for (auto it = m_bottles.begin(); it != m_bottles.end(); ++it)
        it->isBeingKept = m_beingKept.contains(it.key());
    Q_EMIT changed();
}

void OrphanedBottles::keep(const QString& bottle) {
    if (m_beingKept.contains(bottle))
        return;
    m_beingKept.insert(bottle);
    markKept();
    BottleCleanUp::instance()->keepBottle(bottle, this, [this, bottle](const BusResult& result) {
        m_beingKept.remove(bottle);
        if (result.ok) {
            forget(bottle);
            return;
        }
        qWarning().noquote() << "cannot keep the bottle" << bottle << result.errorMessage;
        markKept();
        AppItemWidgetStateManager::instance()->reportFailure({}, result.errorText());
        load();
    });
}

void OrphanedBottles::forget(const QString& bottle) {
    ++m_loads;  // an answer that is under way may still have it
    if (m_bottles.remove(bottle) > 0)
        Q_EMIT changed();
}
