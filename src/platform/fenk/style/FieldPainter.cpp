#include "fenk/style/FieldPainter.h"

#include <QAbstractScrollArea>
#include <QStyle>
#include <QStyleOption>
#include <QWidget>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk::FieldPainter {

namespace {

using Paint::color;

QColor line(const QStyleOption* option, const QWidget* widget) {
    if (!Paint::enabled(option))
        return color(Theme::Border);
    if (hasAlertState(widget))
        return color(Theme::Danger);
    if (option->state & QStyle::State_HasFocus)
        return color(Theme::Accent);
    return Paint::hovered(option) ? mix(color(Theme::Border), color(Theme::Secondary), 0.5)
                                  : color(Theme::Border);
}

}  // namespace

void field(QPainter* painter, const QStyleOption* option, const QWidget* widget) {
    Paint::box(painter, option->rect, Tokens::RadiusControl,
               color(Paint::enabled(option) ? Theme::Surface : Theme::Sunken), line(option, widget));
}

void areaFrame(QPainter* painter, const QStyleOption* option, const QWidget* widget) {
    const bool editor = hasTextAreaLook(widget);
    const QColor ground = widget ? widget->palette().color(QPalette::Base) : color(Theme::Surface);
    Paint::box(painter, option->rect, editor ? Tokens::RadiusControl : Tokens::RadiusCard, ground,
               editor ? line(option, widget) : color(Theme::Border));
}

void comboBox(QPainter* painter, const QStyleOptionComboBox* option, const QWidget* widget, qreal hover) {
    const bool open = option->state & QStyle::State_On;
    if (option->editable) {
        if (option->frame)
            field(painter, option, widget);
    } else if (!Paint::enabled(option)) {
        Paint::box(painter, option->rect, Tokens::RadiusControl, color(Theme::Sunken));
    } else if (option->frame) {
        QColor ground = mix(color(Theme::Surface), color(Theme::AccentSoft), hover);
        if (open || Paint::pressed(option))
            ground = Paint::step(color(Theme::AccentSoft));
        const QColor edge = hasAlertState(widget) ? color(Theme::Danger)
                            : open                ? color(Theme::Accent)
                                                  : color(Theme::Border);
        Paint::box(painter, option->rect, Tokens::RadiusControl, ground, edge);
    }
    const int width = Tokens::Space32;
    const QRect arrow = QStyle::visualRect(
        option->direction, option->rect,
        QRect(option->rect.right() - width + 1, option->rect.top(), width, option->rect.height()));
    Paint::chevron(painter, arrow, Qt::DownArrow,
                   color(Paint::enabled(option) ? Theme::Secondary : Theme::Disabled));
}

void comboLabel(QPainter* painter, const QStyleOptionComboBox* option, const QWidget* widget) {
    const Paint::Scope scope(painter);
    QRect room = widget ? widget->style()->subControlRect(QStyle::CC_ComboBox, option,
                                                          QStyle::SC_ComboBoxEditField, widget)
                        : option->rect;
    if (!option->currentIcon.isNull()) {
        const QRect icon(QPoint(room.left(), room.center().y() - option->iconSize.height() / 2 + 1),
                         option->iconSize);
        option->currentIcon.paint(painter, QStyle::visualRect(option->direction, room, icon), Qt::AlignCenter,
                                  Paint::enabled(option) ? QIcon::Normal : QIcon::Disabled);
        const int used = icon.width() + Tokens::Space8;
        room.adjust(option->direction == Qt::LeftToRight ? used : 0, 0,
                    option->direction == Qt::LeftToRight ? 0 : -used, 0);
    }
    if (option->currentText.isEmpty() || option->editable)
        return;
    painter->setPen(color(Paint::enabled(option) ? Theme::Text : Theme::Disabled));
    painter->drawText(room, Qt::AlignVCenter | QStyle::visualAlignment(option->direction, Qt::AlignLeft),
                      option->fontMetrics.elidedText(option->currentText, Qt::ElideRight, room.width()));
}

void spinBox(QPainter* painter, const QStyleOptionSpinBox* option, const QWidget* widget) {
    if (option->frame)
        field(painter, option, widget);
    if (option->buttonSymbols == QAbstractSpinBox::NoButtons || !widget)
        return;
    const struct {
        QStyle::SubControl part;
        QAbstractSpinBox::StepEnabledFlag step;
        Qt::ArrowType arrow;
    } buttons[] = {{QStyle::SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, Qt::UpArrow},
                   {QStyle::SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, Qt::DownArrow}};
    for (const auto& button : buttons) {
        const QRect rect = widget->style()->subControlRect(QStyle::CC_SpinBox, option, button.part, widget);
        const bool usable = Paint::enabled(option) && (option->stepEnabled & button.step);
        const bool active = usable && option->activeSubControls == button.part;
        if (active && (Paint::pressed(option) || Paint::hovered(option))) {
            const QColor soft = color(Theme::AccentSoft);
            Paint::box(painter, rect, Tokens::RadiusSmall, Paint::pressed(option) ? Paint::step(soft) : soft);
        }
        Paint::chevron(painter, rect, button.arrow, color(usable ? Theme::Secondary : Theme::Disabled));
    }
}

}  // namespace Fenk::FieldPainter
