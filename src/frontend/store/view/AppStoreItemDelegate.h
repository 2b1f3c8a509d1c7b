#pragma once

#include <QPointer>
#include <QStyledItemDelegate>
#include <QVector>

class QAbstractItemView;
class StoreAppItemUI;

/// Makes the cards of the list, fills them from an AppStoreItemModel, and uses those of rows that went out of
/// sight again. Paints a skeleton card for a row without one.
class AppStoreItemDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    explicit AppStoreItemDelegate(QAbstractItemView* view);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

Q_SIGNALS:
    void cardMade(StoreAppItemUI* card) const;
    /// The button of the card.
    void pressed(StoreAppItemUI* card) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QAbstractItemView* m_view;
    mutable QVector<QPointer<StoreAppItemUI>> m_spare;
};
