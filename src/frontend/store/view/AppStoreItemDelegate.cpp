#include "store/view/AppStoreItemDelegate.h"

#include <QAbstractItemView>
#include <QIcon>

#include "store/view/AppStoreItemModel.h"
#include "store/view/SkeletonCard.h"
#include "store/view/StoreAppItemUI.h"

AppStoreItemDelegate::AppStoreItemDelegate(QAbstractItemView* view)
    : QStyledItemDelegate(view), m_view(view) {}

QWidget* AppStoreItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                            const QModelIndex&) const {
    while (!m_spare.isEmpty()) {
        if (StoreAppItemUI* spare = m_spare.takeLast())
            return spare;
    }
    auto* card = new StoreAppItemUI(parent);
    connect(card, &StoreAppItemUI::pressed, this, [this, card] { Q_EMIT pressed(card); });
    Q_EMIT cardMade(card);
    return card;
}

void AppStoreItemDelegate::destroyEditor(QWidget* editor, const QModelIndex&) const {
    auto* card = static_cast<StoreAppItemUI*>(editor);
    card->hide();
    card->setIndex({});
    card->setTabStop(false);
    m_spare.append(card);
}

void AppStoreItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* card = static_cast<StoreAppItemUI*>(editor);
    const auto* model = static_cast<const AppStoreItemModel*>(index.model());
    card->setIndex(index);
    card->setApp(model->app(index).app);
    card->setIcon(index.data(Qt::DecorationRole).value<QIcon>());
    card->setState(model->buttonState(index));
}

/// A card changes nothing of its row.
void AppStoreItemDelegate::setModelData(QWidget*, QAbstractItemModel*, const QModelIndex&) const {}

void AppStoreItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                const QModelIndex&) const {
    editor->move(option.rect.topLeft() + SkeletonCard::CellOffset);
}

QSize AppStoreItemDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return SkeletonCard::Pitch;
}

void AppStoreItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    if (!m_view->isPersistentEditorOpen(index))
        SkeletonCard::paint(painter, option.rect.topLeft());
}

/// The keys of a card are its own: none of them ends an editor.
bool AppStoreItemDelegate::eventFilter(QObject*, QEvent*) {
    return false;
}
