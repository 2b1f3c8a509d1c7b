#include "shell/configuration/components/ComponentsListView.h"

#include <QJsonObject>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "launch/repair/ComponentTitle.h"
#include "shell/configuration/components/BottleDependencies.h"
#include "shell/configuration/components/ComponentRoles.h"
#include "shell/configuration/components/ComponentsItemDelegate.h"
#include "shell/configuration/components/DependencyCatalogue.h"
#include "shell/configuration/components/DependencyFacts.h"

using namespace Fenk;

namespace {

const char Group[] = "1";

int kindOf(const DependencyState& state) {
    if (state.isUnderWay())
        return ComponentRoles::Active;
    if (state.phase == DependencyState::Phase::Failed)
        return ComponentRoles::Bad;
    return state.isInstalled ? ComponentRoles::Good : ComponentRoles::Quiet;
}

}  // namespace

ComponentsListView::ComponentsListView(QWidget* parent)
    : QListView(parent),
      m_dependencies(new BottleDependencies(this)),
      m_items(new QStandardItemModel(this)),
      m_proxy(new QSortFilterProxyModel(this)) {
    setObjectName("components_list");
    setAccessibleName(tr("Components"));
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(Tokens::RowHeight);
    setMouseTracking(true);
    auto* delegate = new ComponentsItemDelegate(this);
    setItemDelegate(delegate);
    connect(delegate, &ComponentsItemDelegate::pressed, this, [this](const QModelIndex& index) {
        setCurrentIndex(index);
        onDownloadComponents();
    });
    m_proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_proxy->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_proxy->setFilterRole(ComponentRoles::SearchText);
    m_proxy->setSortRole(ComponentRoles::Name);
    makeRows();
    m_proxy->setSourceModel(m_items);
    m_proxy->sort(0);
    setModel(m_proxy);
    connect(m_dependencies, &BottleDependencies::changed, this, &ComponentsListView::refreshRow);
    connect(m_dependencies->facts(), &DependencyFacts::changed, this, [this](const QStringList& names) {
        for (const QString& name : names)
            refreshRow(name);
    });
    connect(m_dependencies, &BottleDependencies::startSetup, this, &ComponentsListView::startSetup);
    connect(m_dependencies, &BottleDependencies::setupDone, this, &ComponentsListView::setupDone);
    select({});
}

void ComponentsListView::makeRows() {
    for (const DependencyEntry& entry : DependencyCatalogue::read()) {
        auto* item = new QStandardItem(entry.name);
        item->setData(Group + entry.name, ComponentRoles::Name);
        const QString title = componentTitle(entry.name);
        item->setData(entry.searchText() + (title == entry.name ? QString() : ' ' + title),
                      ComponentRoles::SearchText);
        item->setData(entry.shownDescription(), ComponentRoles::Description);
        m_rows.insert(entry.name, item);
        m_needs.insert(entry.name, entry.needs);
        refreshRow(entry.name);
        m_items->appendRow(item);
    }
}

void ComponentsListView::setBottle(const QString& bottle) {
    if (bottle == m_dependencies->bottle())
        return;
    m_dependencies->setBottle(bottle);
    for (const QString& name : names())
        refreshRow(name);
}

void ComponentsListView::load(const QStringList& installed) {
    m_dependencies->load(installed);
}

QString ComponentsListView::currentName() const {
    return currentIndex().data(Qt::DisplayRole).toString();
}

QString ComponentsListView::descriptionOf(const QString& name) const {
    const QStandardItem* item = m_rows.value(name);
    return item ? item->data(ComponentRoles::Description).toString() : QString();
}

void ComponentsListView::select(const QString& name) {
    const QStandardItem* item = m_rows.value(name);
    const QModelIndex found = item ? m_proxy->mapFromSource(item->index()) : QModelIndex();
    setCurrentIndex(found.isValid() ? found : m_proxy->index(0, 0));
    scrollTo(currentIndex());
}

void ComponentsListView::setStatus(QStandardItem* item, const QString& text, int kind) {
    item->setData(text, ComponentRoles::Status);
    item->setData(kind, ComponentRoles::Kind);
    const QStringList parts{item->text(), item->data(ComponentRoles::Description).toString(), text};
    item->setData(parts.join('\n').trimmed(), Qt::AccessibleTextRole);
}

void ComponentsListView::refreshRow(const QString& name) {
    QStandardItem* item = m_rows.value(name);
    if (!item)
        return;
    const DependencyState state = m_dependencies->state(name);
    const bool isKnown = m_dependencies->facts()->has(name);
    const OfferedComponent facts = m_dependencies->facts()->of(name);
    item->setData(state.action(), ComponentRoles::Action);
    item->setData(isKnown && facts.isAvailable ? facts.sizeText() : QString(), ComponentRoles::Detail);
    const QString description = item->data(ComponentRoles::Description).toString();
    item->setToolTip(plainToolTip(state.reason.isEmpty() ? description : state.reason));
    const QString status = state.text();
    setStatus(item, status.isEmpty() && isKnown && !facts.isAvailable ? tr("Not available") : status,
              kindOf(state));
    Q_EMIT rowChanged(name);
}

void ComponentsListView::filter(const QString& str) {
    const QString before = currentName();
    m_proxy->setFilterFixedString(str);
    select(before);
}

void ComponentsListView::updateComponentState(const QString& name, const QJsonObject& statusObject) {
    QStandardItem* item = m_rows.value(name);
    if (!item)
        return;
    const QString status = statusObject["status"].toString();
    const bool isFailed = status == QLatin1String("failed");
    if (isFailed && statusObject.contains("description"))
        item->setToolTip(plainToolTip(statusObject["description"].toString()));
    setStatus(item, isFailed ? DependencyState::tr("Installation Failed") : status,
              isFailed ? ComponentRoles::Bad : ComponentRoles::Active);
    Q_EMIT rowChanged(name);
}

void ComponentsListView::onDownloadComponents() {
    const QString name = currentName();
    if (name.isEmpty())
        return;
    switch (currentIndex().data(ComponentRoles::Action).toInt()) {
        case DependencyState::Install:
            m_dependencies->install(name);
            break;
        case DependencyState::Reinstall:
            m_dependencies->reinstall(name);
            break;
        case DependencyState::Cancel:
            m_dependencies->cancel(name);
            break;
        default:
            break;
    }
}

/// Return and Space install; what is there already is not installed again by a key pressed in passing.
void ComponentsListView::keyPressEvent(QKeyEvent* event) {
    const bool isPress =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    if (!isPress) {
        QListView::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat() &&
        currentIndex().data(ComponentRoles::Action).toInt() == DependencyState::Install)
        onDownloadComponents();
}

void ComponentsListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    Q_EMIT currentChangedTo(current.data(Qt::DisplayRole).toString());
}
