#include "fenk/style/ButtonPainter.h"

#include <QStyle>
#include <QStyleOptionButton>
#include <QWidget>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"

namespace Fenk::ButtonPainter {

namespace {

using Paint::color;

void filledPanel(QPainter* painter, const QStyleOption* option, const QColor& fill, qreal hover) {
    if (!Paint::enabled(option)) {
        Paint::box(painter, option->rect, Tokens::RadiusControl, color(Theme::Sunken));
        return;
    }
    // Away from the text colour, so the contrast only increases.
    const QColor away = Theme::instance()->isDark() ? Qt::white : Qt::black;
    const qreal share = Paint::pressed(option) ? 0.2 : 0.1 * hover;
    Paint::box(painter, option->rect, Tokens::RadiusControl, mix(fill, away, share));
}

void markBox(QPainter* painter, const QStyleOption* option, const QRectF& rect, qreal radius, bool on,
             qreal hover) {
    if (!Paint::enabled(option)) {
        Paint::box(painter, rect, radius, color(Theme::Sunken), color(Theme::Border));
    } else if (on) {
        const QColor away = Theme::instance()->isDark() ? Qt::white : Qt::black;
        Paint::box(painter, rect, radius,
                   mix(color(Theme::Accent), away, Paint::pressed(option) ? 0.2 : 0.1 * hover));
    } else {
        const QColor ground = mix(color(Theme::Surface), color(Theme::AccentSoft), hover);
        const QColor line =
            mix(mix(color(Theme::Border), color(Theme::Secondary), 0.6), color(Theme::Accent), hover);
        Paint::box(painter, rect, radius, Paint::pressed(option) ? Paint::step(ground) : ground, line);
    }
}

}  // namespace

void panel(QPainter* painter, const QStyleOption* option, const QWidget* widget, qreal hover) {
    const ButtonKind kind = buttonKind(widget);
    if (kind == ButtonKind::Suggested)
        return filledPanel(painter, option, color(Theme::Accent), hover);
    if (kind == ButtonKind::Destructive)
        return filledPanel(painter, option, color(Theme::Danger), hover);
    if (kind == ButtonKind::Quiet)
        return toolPanel(painter, option, widget, hover);
    if (!Paint::enabled(option))
        return Paint::box(painter, option->rect, Tokens::RadiusControl, color(Theme::Sunken));
    const bool on = option->state & QStyle::State_On;
    QColor ground = mix(color(Theme::Surface), color(Theme::AccentSoft), on ? 1 : hover);
    if (Paint::pressed(option))
        ground = Paint::step(color(Theme::AccentSoft));
    Paint::box(painter, option->rect, Tokens::RadiusControl, ground,
               on ? color(Theme::Accent) : color(Theme::Border));
}

void toolPanel(QPainter* painter, const QStyleOption* option, const QWidget*, qreal hover) {
    const QColor soft = color(Theme::AccentSoft);
    if (Paint::pressed(option))
        Paint::box(painter, option->rect, Tokens::RadiusControl, Paint::step(soft));
    else if (option->state & QStyle::State_On)
        Paint::box(painter, option->rect, Tokens::RadiusControl, soft);
    else if (hover > 0 && Paint::enabled(option))
        Paint::box(painter, option->rect, Tokens::RadiusControl, withAlpha(soft, hover));
}

QColor ink(const QStyleOption* option, ButtonKind kind) {
    if (!Paint::enabled(option))
        return color(Theme::Disabled);
    switch (kind) {
        case ButtonKind::Suggested:
        case ButtonKind::Destructive:
            return color(Theme::OnAccent);
        case ButtonKind::Warning:
            return color(Theme::Danger);
        default:
            return color(option->state & QStyle::State_On ? Theme::Accent : Theme::Text);
    }
}

void label(QPainter* painter, const QStyleOptionButton* option, const QWidget* widget) {
    const Paint::Scope scope(painter);
    const QColor colour = ink(option, buttonKind(widget));
    QRect room = option->rect;
    if (option->features & QStyleOptionButton::HasMenu) {
        const QRect arrow(room.right() - Tokens::Space16 - Tokens::Space8, room.top(), Tokens::Space16,
                          room.height());
        Paint::chevron(painter, arrow, Qt::DownArrow, colour);
        room.setRight(arrow.left());
    }
    const bool pictured = !option->icon.isNull();
    const QSize icon = pictured ? option->iconSize : QSize();
    const int flags = Qt::AlignVCenter | Qt::TextShowMnemonic | Qt::TextSingleLine;
    const int textWidth =
        option->fontMetrics.size(Qt::TextShowMnemonic | Qt::TextSingleLine, option->text).width();
    const int gap = pictured && !option->text.isEmpty() ? Tokens::Space8 : 0;
    const int used = qMin(room.width(), (pictured ? icon.width() : 0) + gap + textWidth);
    int x = room.left() + (room.width() - used) / 2;
    if (pictured) {
        const QRect at =
            QStyle::visualRect(option->direction, option->rect,
                               QRect(QPoint(x, room.center().y() - icon.height() / 2 + 1), icon));
        const bool filled =
            buttonKind(widget) == ButtonKind::Suggested || buttonKind(widget) == ButtonKind::Destructive;
        if (filled && Paint::enabled(option))
            painter->drawPixmap(
                at, tintedPixmap(option->icon, icon, painter->device()->devicePixelRatioF(), colour));
        else
            option->icon.paint(painter, at, Qt::AlignCenter,
                               Paint::enabled(option) ? QIcon::Normal : QIcon::Disabled);
        x += icon.width() + gap;
    }
    painter->setPen(colour);
    const QRect text = QStyle::visualRect(
        option->direction, option->rect, QRect(x, room.top(), room.left() + room.width() - x, room.height()));
    painter->drawText(text, flags | QStyle::visualAlignment(option->direction, Qt::AlignLeft), option->text);
}

void checkBox(QPainter* painter, const QStyleOption* option, qreal hover) {
    const QRectF rect = Paint::centred(option->rect, Tokens::CheckSize, Tokens::CheckSize);
    const bool partly = option->state & QStyle::State_NoChange;
    const bool on = option->state & QStyle::State_On;
    markBox(painter, option, rect, Tokens::RadiusSmall, on || partly, hover);
    const QColor colour = color(Paint::enabled(option) ? Theme::OnAccent : Theme::Disabled);
    if (partly)
        Paint::box(painter, Paint::centred(rect, Tokens::Space8, 2), 1, colour);
    else if (on)
        Paint::tick(painter, rect, colour);
}

void radioButton(QPainter* painter, const QStyleOption* option, qreal hover) {
    const QRectF rect = Paint::centred(option->rect, Tokens::CheckSize, Tokens::CheckSize);
    const bool on = option->state & QStyle::State_On;
    markBox(painter, option, rect, Tokens::CheckSize / 2.0, on, hover);
    if (on) {
        Paint::box(painter, Paint::centred(rect, Tokens::Space8, Tokens::Space8), Tokens::Space4,
                   color(Paint::enabled(option) ? Theme::OnAccent : Theme::Disabled));
    }
}

}  // namespace Fenk::ButtonPainter
