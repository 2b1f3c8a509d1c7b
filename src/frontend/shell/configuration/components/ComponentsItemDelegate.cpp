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
constexpr int DetailWidth = 112;

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

/// The place is that of a row from left to right.
void drawText(QPainter* painter, const QStyleOptionViewItem& row, const QRect& place, Theme::FontRole kind,
              Theme::Role role, const QString& text, Qt::Alignment alignment = Qt::AlignLeft) {
    const QFont font = Theme::instance()->font(kind);
    painter->setFont(font);
    painter->setPen(Paint::color(role));
    painter->drawText(QStyle::visualRect(row.direction, row.rect, place),
                      int(QStyle::visualAlignment(row.direction, alignment) | Qt::AlignVCenter),
                      QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
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
    const QString status = index.data(ComponentRoles::Status).toString();
    QRect room = option.rect.adjusted(Tokens::Space16, 0, -Tokens::Space12, 0);
    QRect right = room;
    if (showsButton(option)) {
        drawButton(painter, option, index);
        right.setLeft(room.right() - buttonRect(option, index).width());
    } else if (!status.isEmpty()) {
        const QFontMetrics metrics(Theme::instance()->font(Theme::Small));
        right.setLeft(room.right() - metrics.horizontalAdvance(status));
        const auto kind = index.data(ComponentRoles::Kind).toInt();
        drawText(painter, option, right, Theme::Small, colorOf(kind), status, Qt::AlignRight);
    } else {
        right.setLeft(room.right() - Tokens::IconSmall);
        const QRect icon = QStyle::visualRect(option.direction, option.rect, right);
        painter->setOpacity(0.6);
        Theme::icon("fenk-save")
            .paint(painter, Paint::centred(icon, Tokens::IconSmall, Tokens::IconSmall).toRect());
        painter->setOpacity(1);
    }
    room.setRight(right.left() - Tokens::Space12);
    const QString detail = index.data(ComponentRoles::Detail).toString();
    if (!detail.isEmpty()) {
        const QRect place(room.right() - DetailWidth, room.top(), DetailWidth, room.height());
        drawText(painter, option, place, Theme::Small, Theme::Secondary, detail, Qt::AlignRight);
        room.setRight(place.left() - Tokens::Space12);
    }

    const QString description = index.data(ComponentRoles::Description).toString();
    const int titleHeight = QFontMetrics(Theme::instance()->font(Theme::Body)).height();
    const int smallHeight = QFontMetrics(Theme::instance()->font(Theme::Small)).height();
    const int height = titleHeight + (description.isEmpty() ? 0 : LineGap + smallHeight);
    QRect line(room.left(), room.center().y() - height / 2 + 1, room.width(), titleHeight);
    drawText(painter, option, line, Theme::Body, Theme::Text, index.data(Qt::DisplayRole).toString());
    line.setRect(line.left(), line.bottom() + 1 + LineGap, line.width(), smallHeight);
    drawText(painter, option, line, Theme::Small, Theme::Secondary, description);
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
