#include "shell/SidebarView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {

constexpr int Width = 200;
constexpr int RowHeight = 40;
constexpr int GroupHeight = 36;
constexpr int LongestName = 64;

class Delegate : public QStyledItemDelegate {
public:
    explicit Delegate(QTreeView* view) : QStyledItemDelegate(view), m_view(view) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        return {Width, index.parent().isValid() ? RowHeight : GroupHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (index.parent().isValid()) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        const Paint::Scope scope(painter);
        const QRect inner =
            option.rect.adjusted(Tokens::Space16 + Tokens::Space4, Tokens::Space8, -Tokens::Space16, 0);
        painter->setFont(Theme::instance()->font(Theme::SmallStrong));
        painter->setPen(Paint::color(Theme::Secondary));
        painter->drawText(inner, Qt::AlignVCenter | Qt::AlignLeft, index.data().toString());
        const QRect arrow(inner.right() - Tokens::IconSmall, inner.top(), Tokens::IconSmall, inner.height());
        Paint::chevron(painter, arrow, m_view->isExpanded(index) ? Qt::DownArrow : Qt::RightArrow,
                       Paint::color(Theme::Secondary));
        if ((option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange))
            Paint::ring(painter, option.rect.adjusted(Tokens::Space8, Tokens::Space4, -Tokens::Space8, 0),
                        Tokens::RadiusWindow);
    }

private:
    QTreeView* m_view;
};

/// In the text colour of the present theme.
QIcon tintedIcon(const QString& name) {
    QIcon result;
    QIcon shape = Theme::icon(name);
    if (shape.isNull())
        shape = Theme::icon("cxb_add_app");  // a category that the theme has no icon for
    const QSize size(Tokens::IconMedium, Tokens::IconMedium);
    for (const qreal ratio : {1.0, 2.0}) {
        result.addPixmap(tintedPixmap(shape, size, ratio, Paint::color(Theme::Text)), QIcon::Normal);
        result.addPixmap(tintedPixmap(shape, size, ratio, Paint::color(Theme::Text)), QIcon::Selected);
        result.addPixmap(tintedPixmap(shape, size, ratio, Paint::color(Theme::Disabled)), QIcon::Disabled);
    }
    return result;
}

}  // namespace

SidebarView::SidebarView(QWidget* parent) : QTreeView(parent), m_model(new QStandardItemModel(this)) {
    setObjectName("sidebar");
    setAccessibleName(tr("Pages"));
    setFixedWidth(Width);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(0);
    setExpandsOnDoubleClick(false);
    setEditTriggers(NoEditTriggers);
    setIconSize(QSize(Tokens::IconMedium, Tokens::IconMedium));
    setItemDelegate(new Delegate(this));
    setSidebarLook(this);
    setModel(m_model);
    QStandardItem* mine = addGroup(tr("My"));
    addRow(mine, tr("My Apps"), "cxb_my_apps");
    QStandardItem* all = addGroup(tr("All Apps"));
    addRow(all, tr("All Apps"), "cxb_add_app");
    refreshIcons();
    expandAll();
    selectMyApps();
    connect(this, &QTreeView::clicked, this, &SidebarView::onClicked);
}

QStandardItem* SidebarView::addGroup(const QString& title) {
    auto* group = new QStandardItem(title);
    group->setFlags(Qt::ItemIsEnabled);
    m_model->appendRow(group);
    return group;
}

QStandardItem* SidebarView::addRow(QStandardItem* group, const QString& title, const QString& iconName) {
    auto* row = new QStandardItem(title);
    row->setData(iconName, IconNameRole);
    group->appendRow(row);
    return row;
}

void SidebarView::refreshIcons() {
    for (int group = 0; group < m_model->rowCount(); ++group) {
        for (int row = 0; row < m_model->item(group)->rowCount(); ++row) {
            QStandardItem* item = m_model->item(group)->child(row);
            item->setIcon(tintedIcon(item->data(IconNameRole).toString()));
        }
    }
}

void SidebarView::setCategories(const QList<OpenAPI::VeskClientCategoryInfo>& categories) {
    if (categories.isEmpty())
        return;
    QStandardItem* group = m_model->item(AllApps);
    const QModelIndex current = currentIndex();
    const bool wasBelow = current.parent() == group->index();
    const QVariant chosen = wasBelow ? current.data(CategoryRole) : QVariant();
    // Qt would choose a row of another page instead of the one that is removed.
    if (wasBelow)
        leaveCategory();
    group->removeRows(0, group->rowCount());
    for (const auto& category : categories) {
        QStandardItem* row = addRow(group, category.getName().left(LongestName).simplified(),
                                    QString("cxb_category_%1").arg(category.getId()));
        row->setData(category.getId(), CategoryRole);
        row->setToolTip(plainToolTip(row->text()));
        if (chosen.isValid() && chosen == category.getId())
            setCurrentIndex(row->index());
    }
    refreshIcons();
}

void SidebarView::selectMyApps() {
    setCurrentIndex(m_model->item(MyApps)->child(0)->index());
}

void SidebarView::leaveCategory() {
    setCurrentIndex(m_model->item(AllApps)->index());
    selectionModel()->clearSelection();
}

void SidebarView::onClicked(const QModelIndex& index) {
    if (!index.parent().isValid())
        setExpanded(index, !isExpanded(index));
    else
        Q_EMIT pageChosen(Group(index.parent().row()), index);
}

void SidebarView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
        if (currentIndex().isValid() && (currentIndex().flags() & Qt::ItemIsEnabled))
            onClicked(currentIndex());
        return;
    }
    // Letters start a search for programs in the main window.
    if (!event->text().isEmpty() && event->text().at(0).isPrint())
        event->ignore();
    else
        QTreeView::keyPressEvent(event);
}

/// The shown page stays selected while the current row is a group.
QItemSelectionModel::SelectionFlags SidebarView::selectionCommand(const QModelIndex& index,
                                                                  const QEvent* event) const {
    return index.parent().isValid() ? QTreeView::selectionCommand(index, event)
                                    : QItemSelectionModel::NoUpdate;
}

void SidebarView::drawBranches(QPainter*, const QRect&, const QModelIndex&) const {}
