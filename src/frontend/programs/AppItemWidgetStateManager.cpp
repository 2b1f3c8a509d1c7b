#include "programs/AppItemWidgetStateManager.h"

#include <QDebug>
#include <QFile>

#include "backend/BottlesConfig.h"
#include "launch/records/FailedStarts.h"
#include "programs/ProgramRuns.h"
#include "programs/ProgramStarts.h"

AppItemWidgetStateManager::AppItemWidgetStateManager() {
    ProgramStarts::instance();  // hears of a deleted program first, so that its end can still be told
    connect(BottlesConfig::instance(), &BottlesConfig::program_deleted, this,
            &AppItemWidgetStateManager::onProgramUuidDeleted);
    connect(ProgramStarts::instance(), &ProgramStarts::failed, this, &AppItemWidgetStateManager::failed);
    connect(ProgramRuns::instance(), &ProgramRuns::changed, this, &AppItemWidgetStateManager::notifyWatchers);
    connect(FailedStarts::instance(), &FailedStarts::changed, this,
            [this](const QString& bottle, const QString& uuid) {
                notifyWatchers({bottle, uuid});
            });
}

void AppItemWidgetStateManager::startSetup(const QString& appId) {
    m_setups.add(appId);
    Q_EMIT signalAppSetuping(appId);
}

void AppItemWidgetStateManager::onSetupingYmlDone(const QString& appInfoId, const QString& yamlFile,
                                                  bool needRemove) {
    if (!m_setups.contains(appInfoId))
        return;
    qInfo().noquote().nospace() << "appInfoId [" << appInfoId << "] Setup done, check the widgets state...";
    if (m_setups.count(appInfoId) == 1)
        Q_EMIT setupDone(appInfoId);
    if (needRemove)
        QFile::remove(yamlFile);
    m_setups.remove(appInfoId);
}

void AppItemWidgetStateManager::watchItem(const ProgramRef& ref, QObject* item,
                                          const std::function<void()>& refresh) {
    const QString uuid = ref.uuid;
    qInfo() << "watching installed local app [ " << uuid << " ] -> " << item;
    m_items.insert(uuid, {ref, item, refresh});
    connect(item, &QObject::destroyed, this, [this, uuid] {
        for (auto it = m_items.find(uuid); it != m_items.end() && it.key() == uuid;)
            it = it->object.isNull() ? m_items.erase(it) : std::next(it);
    });
}

void AppItemWidgetStateManager::watchCard(const QString& uuid, const QModelIndex& card) {
    qInfo() << "watching installed store app [ " << uuid << " ] -> " << card;
    // Cards of a list that was emptied since.
    for (auto it = m_cards.find(uuid); it != m_cards.end() && it.key() == uuid;)
        it = it->isValid() ? std::next(it) : m_cards.erase(it);
    if (!m_cards.contains(uuid, card))
        m_cards.insert(uuid, card);
}

void AppItemWidgetStateManager::onProgramUuidDeleted(const QString&, const QString& programUuid) {
    m_cards.remove(programUuid);
}

void AppItemWidgetStateManager::reportRefusedRating(const Program& program) {
    Q_EMIT ratingRefused();
    reportFailure(program.ref.uuid, tr("The rating of %1 could not be kept.").arg(program.name));
}

void AppItemWidgetStateManager::notifyWatchers(const ProgramRef& ref) {
    const auto items = m_items.values(ref.uuid);
    for (const Item& item : items) {
        if (item.object && item.ref == ref)
            item.refresh();
    }
    const auto cards = m_cards.values(ref.uuid);
    for (const QPersistentModelIndex& card : cards) {
        if (card.isValid())
            Q_EMIT cardChanged(card);
    }
}
