// The measuring half of Style; the drawing half is Style.cpp.
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QFocusFrame>
#include <QGroupBox>
#include <QLineEdit>
#include <QStyleOption>
#include <QTabBar>

#include "fenk/style/BarPainter.h"
#include "fenk/style/MenuPainter.h"
#include "fenk/style/Style.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk {

namespace {

bool isComboList(const QWidget* view) {
    return view && view->inherits("QComboBoxListView");
}

/// Space before and after the content of an item, besides the focus margin that Qt adds around each part.
int itemSide(const QWidget* view) {
    return (hasSidebarLook(view) ? Tokens::Space24
            : isComboList(view)  ? Tokens::Space8
                                 : Tokens::Space12) -
           (Tokens::RingExtent + 1);
}

/// QLineEdit adds this on every side.
constexpr int EditorMargin = 2;

}  // namespace

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
        case PM_FocusFrameHMargin:
        case PM_FocusFrameVMargin:
            return Tokens::RingExtent;
        case PM_ButtonMargin:
            return 2 * Tokens::Space8;
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
        case PM_MenuPanelWidth:
        case PM_MenuHMargin:
        case PM_MenuBarPanelWidth:
        case PM_TabBarTabShiftHorizontal:
        case PM_TabBarTabShiftVertical:
        case PM_TabBarTabOverlap:
        case PM_TabBarBaseOverlap:
        case PM_TabBarBaseHeight:
        case PM_ScrollView_ScrollBarSpacing:
        case PM_ButtonDefaultIndicator:
            return 0;
        case PM_MenuVMargin:
            return Tokens::Space4;
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return Tokens::CheckSize;
        case PM_CheckBoxLabelSpacing:
        case PM_RadioButtonLabelSpacing:
            return Tokens::Space8;
        case PM_ScrollBarExtent:
            return Tokens::ScrollBarExtent;
        case PM_ScrollBarSliderMin:
            return Tokens::ScrollBarThumbMin;
        case PM_SliderThickness:
        case PM_SliderControlThickness:
            return Tokens::SliderHandle + 2;
        case PM_SliderLength:
            return Tokens::SliderHandle + 2;
        case PM_SmallIconSize:
        case PM_ButtonIconSize:
        case PM_ListViewIconSize:
        case PM_TabBarIconSize:
        case PM_ToolBarIconSize:
            return metric == PM_ListViewIconSize ? Tokens::IconMedium : Tokens::IconSmall;
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return Tokens::Space16;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing:
            return Tokens::Space8;
        case PM_SplitterWidth:
            return Tokens::Space8 + 1;
        case PM_ToolTipLabelFrameWidth:
            return Tokens::Space8;
        case PM_TabBarTabHSpace:
            return 2 * Tokens::Space16;
        case PM_TabBarTabVSpace:
            return Tokens::Space16;
        case PM_HeaderMargin:
            return Tokens::Space8;
        case PM_HeaderDefaultSectionSizeVertical:
            return Tokens::RowHeight;
        case PM_TreeViewIndentation:
            return Tokens::Space24;
        case PM_TextCursorWidth:
            return 1;
        case PM_DefaultFrameWidth:
            if (qobject_cast<const QLineEdit*>(widget))
                return Tokens::Space8;
            if (hasTextAreaLook(widget))
                return Tokens::Space8;
            if (widget && widget->inherits("QComboBoxPrivateContainer"))
                return Tokens::Space4;
            // Inside the rounded corners, so that the content does not cover them.
            return qobject_cast<const QAbstractScrollArea*>(widget) ? Tokens::Space4 : 1;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* data) const {
    switch (hint) {
        case SH_FocusFrame_AboveWidget:
        case SH_ItemView_ShowDecorationSelected:
        case SH_Menu_MouseTracking:
            return 1;
        case SH_FocusFrame_Mask:
            return 0;
        case SH_ComboBox_Popup:
        case SH_EtchDisabledText:
        case SH_DitherDisabledText:
        case SH_DialogButtonBox_ButtonsHaveIcons:
        case SH_UnderlineShortcut:
            return 0;
        case SH_ComboBox_PopupFrameStyle:
            return int(QFrame::StyledPanel) | int(QFrame::Plain);
        case SH_ComboBox_ListMouseTracking:
            return 1;
        case SH_ToolTip_WakeUpDelay:
            return Tokens::ToolTipDelayMs;
        case SH_Table_GridLineColor:
            return int(Theme::instance()->color(Theme::Border).rgba());
        case SH_ToolTip_Mask:
        case SH_Menu_Mask:
            return 0;
        case SH_Widget_Animation_Duration:
            return Theme::instance()->duration(Tokens::HoverMs);
        case SH_TabBar_Alignment:
            return Qt::AlignLeft;
        default:
            return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
        case CT_PushButton:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
                // Quiet ones have no ground of their own and may stand closer.
                const bool isQuiet = buttonKind(widget) == ButtonKind::Quiet;
                int width = size.width() + 2 * (isQuiet ? Tokens::Space12 : Tokens::Space16);
                if (!button->icon.isNull() && !button->text.isEmpty())
                    width += Tokens::Space8;
                if (button->features & QStyleOptionButton::HasMenu)
                    width += Tokens::Space16;
                if (!button->text.isEmpty())
                    width = qMax(width, Tokens::ButtonMinWidth);
                return {width, qMax(Tokens::ControlHeight, size.height() + Tokens::Space8)};
            }
            return result;
        case CT_LineEdit:
            return {result.width(), qMax(Tokens::ControlHeight, size.height() + Tokens::Space8)};
        case CT_ComboBox:
            return {size.width() + Tokens::Space12 + Tokens::Space32 + Tokens::Space4,
                    qMax(Tokens::ControlHeight, size.height() + Tokens::Space8)};
        case CT_SpinBox:
            return {size.width() + Tokens::Space16 + Tokens::Space32, Tokens::ControlHeight};
        case CT_CheckBox:
        case CT_RadioButton:
            return {result.width() + 2, qMax(Tokens::Space24, result.height())};
        case CT_MenuItem:
            if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option))
                return MenuPainter::itemSize(item);
            return result;
        case CT_ItemViewItem:
            if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
                item && item->decorationPosition != QStyleOptionViewItem::Top)
                result.setHeight(
                    qMax(result.height(), isComboList(widget) ? Tokens::MenuRowHeight : Tokens::RowHeight));
            return result + QSize(2 * itemSide(widget), 0);
        case CT_HeaderSection:
            return {result.width(), qMax(Tokens::HeadHeight, result.height())};
        case CT_TabBarTab:
            return {result.width(), qMax(Tokens::TabHeight, result.height())};
        case CT_ProgressBar:
            return {result.width(), qMax(Tokens::ProgressHeight, size.height())};
        default:
            return result;
    }
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const {
    const QRect all = option->rect;
    const auto visual = [option, &all](const QRect& r) { return visualRect(option->direction, all, r); };
    if (control == CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return BarPainter::scrollBarPart(bar, part);
    }
    if (control == CC_ComboBox) {
        const QRect arrow(all.right() - Tokens::Space32 + 1, all.top(), Tokens::Space32, all.height());
        if (part == SC_ComboBoxArrow)
            return visual(arrow);
        if (part == SC_ComboBoxEditField) {
            const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
            const int side = Tokens::Space12 - (combo && combo->editable ? EditorMargin : 0);
            return visual(
                QRect(QPoint(all.left() + side, all.top() + 2), QPoint(arrow.left() - 1, all.bottom() - 2)));
        }
        if (part == SC_ComboBoxListBoxPopup)
            return all;
    }
    if (control == CC_SpinBox) {
        const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
        const bool buttons = spin && spin->buttonSymbols != QAbstractSpinBox::NoButtons;
        const int width = Tokens::Space24;
        const int left = all.right() - width - 2;
        const int half = (all.height() - 4) / 2;
        if (part == SC_SpinBoxUp)
            return buttons ? visual(QRect(left, all.top() + 2, width, half)) : QRect();
        if (part == SC_SpinBoxDown)
            return buttons ? visual(QRect(left, all.top() + 2 + half, width, half)) : QRect();
        if (part == SC_SpinBoxEditField)
            return visual(QRect(QPoint(all.left() + Tokens::Space12 - EditorMargin, all.top() + 2),
                                QPoint(buttons ? left - 1 : all.right() - Tokens::Space4, all.bottom() - 2)));
    }
    if (control == CC_GroupBox && qstyleoption_cast<const QStyleOptionGroupBox*>(option)) {
        const auto* group = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
        const bool titled = !group->text.isEmpty() || (group->subControls & SC_GroupBoxCheckBox);
        const int head = titled ? qMax(group->fontMetrics.height(), Tokens::CheckSize) + Tokens::Space8 : 0;
        const bool marked = group->subControls & SC_GroupBoxCheckBox;
        const int mark = marked ? Tokens::CheckSize + Tokens::Space8 : 0;
        switch (part) {
            case SC_GroupBoxFrame:
                return all.adjusted(0, head, 0, 0);
            case SC_GroupBoxContents:
                return all.adjusted(1, head + 1, -1, -1);
            case SC_GroupBoxCheckBox:
                return visual(QRect(all.left(), all.top(), Tokens::CheckSize, Tokens::CheckSize));
            case SC_GroupBoxLabel:
                return visual(QRect(all.left() + mark, all.top(),
                                    group->fontMetrics.horizontalAdvance(group->text) + Tokens::Space8,
                                    head - Tokens::Space8));
            default:
                break;
        }
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    switch (element) {
        case SE_LineEditContents: {
            // A clear button or icon adds its own margin inside QLineEdit.
            const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            const int side = frame && frame->lineWidth > 0 ? Tokens::Space12 - EditorMargin : 0;
            return option->rect.adjusted(side, 1, -side, -1);
        }
        case SE_CheckBoxIndicator:
        case SE_RadioButtonIndicator:
            return visualRect(option->direction, option->rect,
                              QRect(option->rect.left(),
                                    option->rect.top() + (option->rect.height() - Tokens::CheckSize) / 2,
                                    Tokens::CheckSize, Tokens::CheckSize));
        case SE_CheckBoxContents:
        case SE_RadioButtonContents:
            return visualRect(option->direction, option->rect,
                              option->rect.adjusted(Tokens::CheckSize + Tokens::Space8, 0, 0, 0));
        case SE_ProgressBarGroove:
        case SE_ProgressBarContents:
        case SE_ProgressBarLabel:
            return option->rect;
        case SE_ItemViewItemDecoration:
        case SE_ItemViewItemText:
        case SE_ItemViewItemCheckIndicator:
        case SE_ItemViewItemFocusRect:
            if (const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
                item && item->decorationPosition == QStyleOptionViewItem::Left &&
                element != SE_ItemViewItemFocusRect) {
                QStyleOptionViewItem inner(*item);
                const int side = itemSide(widget);
                inner.rect.adjust(side, 0, -side, 0);
                return QProxyStyle::subElementRect(element, &inner, widget);
            }
            break;
        default:
            break;
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

}  // namespace Fenk
