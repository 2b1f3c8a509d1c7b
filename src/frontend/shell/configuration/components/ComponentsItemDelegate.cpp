#include "shell/configuration/components/ComponentsItemDelegate.h"

#include <QAbstractItemView>
#include <QMouseEvent>
#include <QPainter>

#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/components/ComponentRoles.h"
#include "shell/configuration/components/DependencyStates.h"

using namespace Fenk;

namespace {

constexpr int LineGap = 2;
constexpr int ButtonHeight = Tokens::CompactHeight;
constexpr int DetailWidth = 96;

Theme::Role colorOf(int kind) {
    switch (kind) {
        case ComponentRoles::Good:
            return Theme::Success;
        case ComponentRoles::Bad:
            return Theme::Danger;
        case ComponentRoles::Active:
            return Theme::Accent;
        default:
            return Theme::Secondary;
    }
}

/// The row has its button while the pointer is over it, or the keys are.
bool showsButton(const QStyleOptionViewItem& option) {
    const bool hasKeys = (option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_Active);
    return (option.state & QStyle::State_MouseOver) || hasKeys;
}

void drawText(QPainter* painter, const QRect& place, const QFont& font, Theme::Role role, const QString& text,
              int alignment = Qt::AlignLeft | Qt::AlignVCenter) {
    painter->setFont(font);
    painter->setPen(Paint::color(role));
    painter->drawText(place, alignment, QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
}

}  // namespace

QString ComponentsItemDelegate::actionText(int action) {
    switch (action) {
        case DependencyState::Install:
            return tr("Install");
        case DependencyState::Reinstall:
            return tr("Reinstall");
        case DependencyState::Cancel:
            return tr("Cancel");
        default:
            return {};
    }
}

void ComponentsItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    const QStyle* style = option.widget->style();
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    row.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, option.widget);

    const Paint::Scope scope(painter);
    const QFont title = Theme::instance()->font(Theme::Body);
    const QFont small = Theme::instance()->font(Theme::Small);
    const QString status = index.data(ComponentRoles::Status).toString();
    QRect room = option.rect.adjusted(Tokens::Space16, 0, -Tokens::Space12, 0);
    QRect right = room;
    if (showsButton(option)) {
        drawButton(painter, option, index);
        right = buttonRect(option, index);
    } else if (!status.isEmpty()) {
        right.setLeft(room.right() - QFontMetrics(small).horizontalAdvance(status));
        const auto kind = index.data(ComponentRoles::Kind).toInt();
        drawText(painter, right, small, colorOf(kind), status, Qt::AlignRight | Qt::AlignVCenter);
    } else {
        right.setLeft(room.right() - Tokens::IconSmall);
        const QRectF place = Paint::centred(right, Tokens::IconSmall, Tokens::IconSmall);
        painter->setOpacity(0.6);
        Theme::icon("fenk-save").paint(painter, place.toRect());
        painter->setOpacity(1);
    }
    room.setRight(right.left() - Tokens::Space12);
    const QString detail = index.data(ComponentRoles::Detail).toString();
    if (!detail.isEmpty()) {
        const QRect place(room.right() - DetailWidth, room.top(), DetailWidth, room.height());
        drawText(painter, place, small, Theme::Secondary, detail, Qt::AlignRight | Qt::AlignVCenter);
        room.setRight(place.left() - Tokens::Space12);
    }

    const QString description = index.data(ComponentRoles::Description).toString();
    const int titleHeight = QFontMetrics(title).height(), smallHeight = QFontMetrics(small).height();
    const int height = titleHeight + (description.isEmpty() ? 0 : LineGap + smallHeight);
    const int top = room.center().y() - height / 2 + 1;
    drawText(painter, {room.left(), top, room.width(), titleHeight}, title, Theme::Text,
             index.data(Qt::DisplayRole).toString());
    drawText(painter, {room.left(), top + titleHeight + LineGap, room.width(), smallHeight}, small,
             Theme::Secondary, description);
}

QRect ComponentsItemDelegate::buttonRect(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString text = actionText(index.data(ComponentRoles::Action).toInt());
    if (text.isEmpty())
        return {};
    const QFontMetrics metrics(Theme::instance()->font(Theme::Body));
    const int width = qMax(Tokens::ButtonMinWidth, metrics.horizontalAdvance(text) + 2 * Tokens::Space12);
    QRect place(0, 0, width, ButtonHeight);
    place.moveCenter(option.rect.center());
    place.moveRight(option.rect.right() - Tokens::Space12);
    return QStyle::visualRect(option.direction, option.rect, place);
}

void ComponentsItemDelegate::drawButton(QPainter* painter, const QStyleOptionViewItem& row,
                                        const QModelIndex& index) const {
    QStyleOptionButton button;
    button.initFrom(row.widget);
    button.rect = buttonRect(row, index);
    button.text = actionText(index.data(ComponentRoles::Action).toInt());
    button.state = QStyle::State_Enabled | QStyle::State_Raised | (row.state & QStyle::State_Active);
    if (m_down == index)
        button.state |= QStyle::State_Sunken;
    painter->setFont(Theme::instance()->font(Theme::Body));
    row.widget->style()->drawControl(QStyle::CE_PushButton, &button, painter, nullptr);
}

QSize ComponentsItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), Tokens::RowHeight};
}

bool ComponentsItemDelegate::editorEvent(QEvent* event, QAbstractItemModel*,
                                         const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const bool isOver = mouse->button() == Qt::LeftButton && buttonRect(option, index).contains(mouse->pos());
    if (event->type() == QEvent::MouseButtonPress) {
        m_down = isOver ? QPersistentModelIndex(index) : QPersistentModelIndex();
    } else {
        const bool isClick = isOver && m_down == index;
        m_down = QPersistentModelIndex();
        if (isClick)
            Q_EMIT pressed(index);
    }
    return isOver;
}
