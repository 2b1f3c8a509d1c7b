#pragma once

#include <QTreeView>

#include "store/records/VeskClientCategoryInfo.h"

class QStandardItem;
class QStandardItemModel;

/// The list of pages at the window's left side. A click on a group expands or collapses it; a click on a row
/// below it emits pageChosen().
class SidebarView : public QTreeView {
    Q_OBJECT
public:
    enum Group { MyApps, AllApps };
    enum Role { IconNameRole = Qt::UserRole, CategoryRole = 257 };

    explicit SidebarView(QWidget* parent = nullptr);

    QStandardItemModel* sidebarModel() const { return m_model; }
    /// Draws the icons in the colours of the present theme.
    void refreshIcons();
    /// The rows of the group AllApps. Without categories the rows stay as they are.
    void setCategories(const QList<OpenAPI::VeskClientCategoryInfo>& categories);
    /// Selects the library, without choosing it.
    void selectMyApps();
    /// The store is shown, but none of its categories.
    void leaveCategory();

Q_SIGNALS:
    void pageChosen(SidebarView::Group group, const QModelIndex& row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;

private:
    QStandardItem* addGroup(const QString& title);
    QStandardItem* addRow(QStandardItem* group, const QString& title, const QString& iconName);
    void onClicked(const QModelIndex& index);

    QStandardItemModel* m_model;
};
