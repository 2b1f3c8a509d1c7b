#include "store/view/AppStoreItemModel.h"

#include <QDebug>
#include <QGuiApplication>

#include "backend/BottlesConfig.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ProgramRuns.h"
#include "store/images/NetworkImageLoader.h"
#include "store/install/StoreProgram.h"
#include "store/view/SkeletonCard.h"

using AppStoreViewUtils::StoreAppModelData;

namespace {

constexpr int IconsKiB = 32 * 1024;

QUrl iconUrl(const StoreAppModelData& data) {
    return NetworkImageLoader::webUrl(data.app.getIconSaveKey());
}

/// An id that arrives as text.
bool isApp(const StoreAppModelData& data, const QString& appId) {
    bool isNumber = false;
    const qulonglong number = appId.toULongLong(&isNumber);
    return isNumber ? qulonglong(data.app.getAppId()) == number : data.app.getAppInfoId() == appId;
}

}  // namespace

AppStoreItemModel::AppStoreItemModel(QObject* parent) : QStandardItemModel(parent), m_icons(IconsKiB) {
    qRegisterMetaType<StoreAppModelData>("AppStoreViewUtils::StoreAppModelData");
    connect(NetworkImageLoader::instance(), &NetworkImageLoader::imageLoaded, this,
            &AppStoreItemModel::onImageLoaded);
    auto* states = AppItemWidgetStateManager::instance();
    connect(states, &AppItemWidgetStateManager::signalAppSetuping, this, &AppStoreItemModel::onAppSetuping);
    connect(states, &AppItemWidgetStateManager::setupDone, this, &AppStoreItemModel::onSetupDone);
    connect(states, &AppItemWidgetStateManager::cardChanged, this, [this](const QModelIndex& card) {
        if (card.model() == this)
            updateRunning(card);
    });
    connect(BottlesConfig::instance(), &BottlesConfig::program_deleted, this,
            [this](const QString& bottle, const QString& uuid) {
                for (const auto& row : rows([&](const StoreAppModelData& data) {
                         return data.program() == ProgramRef{bottle, uuid};
                     }))
                    lookUp(row, false);
            });
    connect(BottlesConfig::instance(), &BottlesConfig::bottles_deleted, this, [this](const QString& bottle) {
        for (const auto& row : rows([&](const StoreAppModelData& data) { return data.bottle == bottle; }))
            lookUp(row, false);
    });
}

template <class Fits>
QList<QPersistentModelIndex> AppStoreItemModel::rows(Fits fits) const {
    QList<QPersistentModelIndex> found;
    for (int row = 0; row < rowCount(); ++row) {
        if (fits(app(index(row, 0))))
            found.append(index(row, 0));
    }
    return found;
}

StoreAppModelData AppStoreItemModel::app(const QModelIndex& index) const {
    return index.data(AppRole).value<StoreAppModelData>();
}

AppStoreViewUtils::ButtonState AppStoreItemModel::buttonState(const QModelIndex& index) const {
    return AppStoreViewUtils::buttonState(index.data(RunningRole).toBool(),
                                          index.data(InstalledRole).toBool(),
                                          index.data(InstallingRole).toBool());
}

QVariant AppStoreItemModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::DecorationRole && index.isValid()) {
        const QIcon* icon = m_icons.object(iconUrl(app(index)));
        if (icon)
            return *icon;
        return m_failed.contains(iconUrl(app(index))) ? m_defaultIcon : QIcon();
    }
    return QStandardItemModel::data(index, role);
}

void AppStoreItemModel::appendApps(const QList<StoreAppModelData>& apps) {
    const int first = rowCount();
    QList<QStandardItem*> items;
    for (const auto& data : apps) {
        auto* item = new QStandardItem(AppStoreViewUtils::oneLine(data.app.getAppName()));
        item->setEditable(false);
        item->setData(QVariant::fromValue(data), AppRole);
        const QString appId = QString::number(data.app.getAppId());
        if (AppItemWidgetStateManager::instance()->isSettingUp(appId)) {
            qInfo().noquote().nospace() << "AppId" << appId << "is setuping, waiting for setuping finish";
            item->setData(true, InstallingRole);
        }
        items.append(item);
    }
    invisibleRootItem()->appendRows(items);
    for (int row = first; row < rowCount(); ++row) {
        requestIcon(index(row, 0));
        lookUp(index(row, 0), false);
    }
}

void AppStoreItemModel::clearApps() {
    // New requests would wait behind the old ones.
    for (auto it = m_waiting.cbegin(); it != m_waiting.cend(); ++it)
        NetworkImageLoader::instance()->release(it.key());
    m_waiting.clear();
    m_failed.clear();
    clear();
}

void AppStoreItemModel::requestIcon(const QModelIndex& index) {
    const QUrl url = iconUrl(app(index));
    if (m_icons.contains(url))
        return;
    auto& waiting = m_waiting[url];
    const bool isFirst = waiting.isEmpty();
    if (!waiting.contains(index))
        waiting.append(index);
    if (isFirst)
        NetworkImageLoader::instance()->load(url);
}

void AppStoreItemModel::onImageLoaded(const QUrl& url, const QPixmap& pixmap) {
    const auto waiting = m_waiting.take(url);
    if (waiting.isEmpty())
        return;
    const int edge = qRound(SkeletonCard::IconEdge * qApp->devicePixelRatio());
    const QPixmap fitting = pixmap.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (pixmap.cacheKey() == NetworkImageLoader::instance()->defaultPixmap().cacheKey()) {
        if (m_defaultIcon.isNull())
            m_defaultIcon = QIcon(fitting);
        m_failed.insert(url);
    } else {
        m_failed.remove(url);
        m_icons.insert(url, new QIcon(fitting), qMax(1, fitting.width() * fitting.height() * 4 / 1024));
    }
    for (const auto& index : waiting) {
        if (index.isValid())
            Q_EMIT dataChanged(index, index, {Qt::DecorationRole});
    }
}

void AppStoreItemModel::lookUp(const QModelIndex& index, bool endsInstalling) {
    StoreProgram::find(app(index).app, this,
                       [this, row = QPersistentModelIndex(index), endsInstalling](const ProgramRef& program) {
                           if (!row.isValid())
                               return;
                           setProgram(row, program);
                           if (endsInstalling)
                               setData(row, false, InstallingRole);
                       });
}

void AppStoreItemModel::setProgram(const QModelIndex& index, const ProgramRef& program) {
    auto data = app(index);
    const bool isInstalled = !program.uuid.isEmpty();
    if (data.program() != program) {
        data.programId = program.uuid;
        data.bottle = program.bottle;
        setData(index, QVariant::fromValue(data), AppRole);
        if (isInstalled)
            AppItemWidgetStateManager::instance()->watchCard(program.uuid, index);
    }
    setData(index, isInstalled, InstalledRole);
    updateRunning(index);
}

void AppStoreItemModel::updateInstalled(const QModelIndex& index) {
    lookUp(index, true);
}

void AppStoreItemModel::updateRunning(const QModelIndex& index) {
    const ProgramRef program = app(index).program();
    setData(index, !program.uuid.isEmpty() && ProgramRuns::instance()->isRunning(program), RunningRole);
}

void AppStoreItemModel::onAppSetuping(const QString& appId) {
    for (const auto& row : rows([&](const StoreAppModelData& data) { return isApp(data, appId); }))
        setData(row, true, InstallingRole);
}

void AppStoreItemModel::onSetupDone(const QString& appId) {
    for (const auto& row : rows([&](const StoreAppModelData& data) { return isApp(data, appId); }))
        lookUp(row, true);
}
