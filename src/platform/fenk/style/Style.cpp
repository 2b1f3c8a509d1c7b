#include "fenk/style/Style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFocusFrame>
#include <QHeaderView>
#include <QMenu>
#include <QProgressBar>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>
#include <QTableView>
#include <QTreeView>

#include "fenk/style/BarPainter.h"
#include "fenk/style/ButtonKeys.h"
#include "fenk/style/ButtonPainter.h"
#include "fenk/style/Color.h"
#include "fenk/style/ComboDelegate.h"
#include "fenk/style/FieldPainter.h"
#include "fenk/style/FocusRing.h"
#include "fenk/style/ItemPainter.h"
#include "fenk/style/MenuPainter.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Transitions.h"
#include "fenk/style/WidgetLook.h"
#include "fenk/system/WindowPlatform.h"

namespace Fenk {

namespace {

using Paint::color;

bool wantsHover(const QWidget* widget) {
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSlider*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QTabBar*>(widget) || widget->inherits("QLineEdit");
}

template <class Option>
const Option* as(const QStyleOption* option) {
    return qstyleoption_cast<const Option*>(option);
}

Qt::ArrowType arrowOf(QStyle::PrimitiveElement element) {
    switch (element) {
        case QStyle::PE_IndicatorArrowUp:
        case QStyle::PE_IndicatorSpinUp:
            return Qt::UpArrow;
        case QStyle::PE_IndicatorArrowLeft:
            return Qt::LeftArrow;
        case QStyle::PE_IndicatorArrowRight:
            return Qt::RightArrow;
        default:
            return Qt::DownArrow;
    }
}

}  // namespace

Style::Style()
    : QProxyStyle(QStyleFactory::create("Fusion")),
      m_ring(std::make_unique<FocusRing>()),
      m_buttonKeys(std::make_unique<ButtonKeys>()),
      m_transitions(std::make_unique<Transitions>()) {}

Style::~Style() = default;

void Style::polish(QPalette& palette) {
    palette = Theme::instance()->palette();
}

void Style::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (wantsHover(widget))
        widget->setAttribute(Qt::WA_Hover);
    // Before the list is measured, which is earlier than its own polish().
    if (auto* combo = qobject_cast<QComboBox*>(widget))
        ComboDelegate::install(combo->view());
    if (auto* view = qobject_cast<QAbstractItemView*>(widget)) {
        view->viewport()->setAttribute(Qt::WA_Hover);
        view->setMouseTracking(true);
        ComboDelegate::install(view);
    }
    if (auto* table = qobject_cast<QTableView*>(widget))
        table->setShowGrid(false);
    const bool popup = qobject_cast<QMenu*>(widget) || widget->inherits("QTipLabel") ||
                       widget->inherits("QComboBoxPrivateContainer");
    if (popup && WindowPlatform::compositing()) {
        widget->setAttribute(Qt::WA_TranslucentBackground);
        widget->setWindowFlag(Qt::FramelessWindowHint);
    }
}

void Style::unpolish(QWidget* widget) {
    if (wantsHover(widget))
        widget->setAttribute(Qt::WA_Hover, false);
    QProxyStyle::unpolish(widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    const auto hover = [&] { return m_transitions->hover(widget, Paint::hovered(option)); };
    switch (element) {
        case PE_PanelButtonCommand:
        case PE_PanelButtonBevel:
            return ButtonPainter::panel(painter, option, widget, hover());
        case PE_PanelButtonTool:
            return ButtonPainter::toolPanel(painter, option, widget, hover());
        case PE_IndicatorCheckBox:
            return ButtonPainter::checkBox(painter, option, hover());
        case PE_IndicatorItemViewItemCheck:
            return ButtonPainter::checkBox(painter, option, Paint::hovered(option) ? 1 : 0);
        case PE_IndicatorRadioButton:
            return ButtonPainter::radioButton(painter, option, hover());
        case PE_PanelLineEdit:
            if (const auto* frame = as<QStyleOptionFrame>(option); frame && frame->lineWidth > 0)
                FieldPainter::field(painter, option, widget);
            return;
        case PE_Frame:
            if (widget && widget->inherits("QComboBoxPrivateContainer"))
                return MenuPainter::panel(painter, option, widget);
            return FieldPainter::areaFrame(painter, option, widget);
        case PE_FrameGroupBox:
            return Paint::box(painter, option->rect, Tokens::RadiusCard, color(Theme::Surface),
                              color(Theme::Border));
        case PE_FrameLineEdit:
        case PE_FrameDefaultButton:
        case PE_PanelScrollAreaCorner:
        case PE_FrameFocusRect:
        case PE_FrameStatusBarItem:
        case PE_FrameMenu:
        case PE_IndicatorTabClose:
        case PE_PanelStatusBar:
            break;
        case PE_FrameTabBarBase:
            if (const auto* base = as<QStyleOptionTabBarBase>(option);
                base && base->shape == QTabBar::RoundedNorth) {
                const QRect& bar = base->tabBarRect;
                painter->fillRect(QRect(option->rect.left(), bar.bottom(), option->rect.width(), 1),
                                  color(Theme::Border));
            }
            return;
        case PE_PanelMenu:
            return MenuPainter::panel(painter, option, widget);
        case PE_PanelTipLabel:
            return MenuPainter::toolTip(painter, option, widget);
        case PE_PanelItemViewRow:
            if (const auto* row = as<QStyleOptionViewItem>(option);
                row && qobject_cast<const QTreeView*>(widget))
                ItemPainter::row(painter, row, widget);
            return;
        case PE_FrameTabWidget:
            painter->fillRect(QRect(option->rect.topLeft(), QSize(option->rect.width(), 1)),
                              color(Theme::Border));
            return;
        case PE_PanelItemViewItem:
            if (const auto* item = as<QStyleOptionViewItem>(option))
                ItemPainter::row(painter, item, widget);
            return;
        case PE_IndicatorBranch:
            return ItemPainter::branch(painter, option);
        case PE_IndicatorArrowDown:
        case PE_IndicatorArrowUp:
        case PE_IndicatorArrowLeft:
        case PE_IndicatorArrowRight:
            return Paint::chevron(painter, option->rect, arrowOf(element),
                                  color(Paint::enabled(option) ? Theme::Secondary : Theme::Disabled));
        default:
            return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    if (element == PE_FrameFocusRect && Paint::keyboardFocus(option) &&
        qobject_cast<const QAbstractItemView*>(widget) && !widget->inherits("QComboBoxListView"))
        Paint::ring(painter, option->rect.adjusted(1, 1, -1, -1), Tokens::RadiusControl);
    if (element == PE_IndicatorTabClose)
        Theme::icon("fenk-close").paint(painter, option->rect);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
    switch (element) {
        case CE_PushButtonBevel:
            if (const auto* button = as<QStyleOptionButton>(option)) {
                const bool flat = button->features & QStyleOptionButton::Flat;
                proxy()->drawPrimitive(flat ? PE_PanelButtonTool : PE_PanelButtonCommand, option, painter,
                                       widget);
                return;
            }
            break;
        case CE_PushButtonLabel:
            if (const auto* button = as<QStyleOptionButton>(option))
                return ButtonPainter::label(painter, button, widget);
            break;
        case CE_ComboBoxLabel:
            if (const auto* combo = as<QStyleOptionComboBox>(option))
                return FieldPainter::comboLabel(painter, combo, widget);
            break;
        case CE_MenuItem:
            if (const auto* item = as<QStyleOptionMenuItem>(option))
                return MenuPainter::item(painter, item, widget);
            break;
        case CE_MenuEmptyArea:
        case CE_MenuHMargin:
        case CE_MenuVMargin:
            return;
        case CE_TabBarTabShape:
            if (const auto* tab = as<QStyleOptionTab>(option))
                return ItemPainter::tab(painter, tab, widget);
            break;
        case CE_TabBarTabLabel:
            if (const auto* tab = as<QStyleOptionTab>(option))
                return ItemPainter::tabLabel(painter, tab,
                                             proxy()->subElementRect(SE_TabBarTabText, option, widget));
            break;
        case CE_ProgressBarGroove:
            return;
        case CE_ProgressBarContents:
            if (const auto* bar = as<QStyleOptionProgressBar>(option)) {
                if (bar->minimum >= bar->maximum && widget)
                    m_transitions->watchBusyBar(const_cast<QWidget*>(widget));
                return BarPainter::progress(painter, bar);
            }
            break;
        case CE_ProgressBarLabel:
            if (const auto* bar = as<QStyleOptionProgressBar>(option))
                return BarPainter::progressLabel(painter, bar);
            break;
        case CE_Header:
            if (const auto* head = as<QStyleOptionHeader>(option)) {
                ItemPainter::headSection(painter, head);
                ItemPainter::headLabel(painter, head);
                return;
            }
            break;
        case CE_HeaderSection:
            if (const auto* head = as<QStyleOptionHeader>(option))
                return ItemPainter::headSection(painter, head);
            break;
        case CE_HeaderLabel:
            if (const auto* head = as<QStyleOptionHeader>(option))
                return ItemPainter::headLabel(painter, head);
            break;
        case CE_HeaderEmptyArea:
            painter->fillRect(option->rect, color(Theme::Surface));
            return;
        case CE_ItemViewItem:
            if (const auto* item = as<QStyleOptionViewItem>(option)) {
                // The selection background is light, so selected text has the ordinary text colour.
                QStyleOptionViewItem plain(*item);
                plain.palette.setColor(QPalette::HighlightedText, plain.palette.color(QPalette::Text));
                if (!hasSidebarLook(widget))
                    return QProxyStyle::drawControl(element, &plain, painter, widget);
                // The ring is drawn around the rounded row, not around the text.
                plain.state &= ~State_HasFocus;
                QProxyStyle::drawControl(element, &plain, painter, widget);
                return ItemPainter::sidebarRing(painter, item);
            }
            break;
        case CE_FocusFrame:
            return Paint::ring(painter, option->rect,
                               ringRadius(qobject_cast<const QFocusFrame*>(widget)
                                              ? qobject_cast<const QFocusFrame*>(widget)->widget()
                                              : nullptr) +
                                   Tokens::RingExtent);
        case CE_Splitter: {
            const bool flat = option->state & State_Horizontal;
            const QRectF line = flat ? Paint::centred(option->rect, 1, option->rect.height())
                                     : Paint::centred(option->rect, option->rect.width(), 1);
            painter->fillRect(line, color(Paint::hovered(option) ? Theme::Accent : Theme::Border));
            return;
        }
        case CE_ShapedFrame:
            if (const auto* frame = as<QStyleOptionFrame>(option)) {
                if (frame->frameShape == QFrame::HLine || frame->frameShape == QFrame::VLine) {
                    const QRect r = option->rect;
                    painter->fillRect(frame->frameShape == QFrame::HLine
                                          ? QRect(r.left(), r.center().y(), r.width(), 1)
                                          : QRect(r.center().x(), r.top(), 1, r.height()),
                                      color(Theme::Border));
                    return;
                }
            }
            break;
        case CE_RubberBand:
            return Paint::box(painter, option->rect, Tokens::RadiusSmall,
                              withAlpha(color(Theme::Accent), 0.15), color(Theme::Accent));
        default:
            break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto hover = [&] { return m_transitions->hover(widget, Paint::hovered(option)); };
    switch (control) {
        case CC_ComboBox:
            if (const auto* combo = as<QStyleOptionComboBox>(option))
                return FieldPainter::comboBox(painter, combo, widget, hover());
            break;
        case CC_SpinBox:
            if (const auto* spin = as<QStyleOptionSpinBox>(option))
                return FieldPainter::spinBox(painter, spin, widget);
            break;
        case CC_ScrollBar:
            if (const auto* bar = as<QStyleOptionSlider>(option))
                return BarPainter::scrollBar(painter, bar, hover());
            break;
        case CC_Slider:
            if (const auto* slider = as<QStyleOptionSlider>(option))
                return BarPainter::slider(painter, slider,
                                          proxy()->subControlRect(CC_Slider, option, SC_SliderHandle, widget),
                                          hover());
            break;
        default:
            break;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QIcon Style::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    switch (icon) {
        case SP_LineEditClearButton:
            return Theme::icon("fenk-clear");
        case SP_TitleBarCloseButton:
        case SP_DockWidgetCloseButton:
            return Theme::icon("fenk-close");
        default:
            return QProxyStyle::standardIcon(icon, option, widget);
    }
}

}  // namespace Fenk
