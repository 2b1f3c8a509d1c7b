#include "shell/configuration/offline/OfflineComponentsHeaderView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "fenk/style/Paint.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

OfflineComponentsHeaderView::OfflineComponentsHeaderView(QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent) {
    setObjectName("offline_components_header");
    setFocusPolicy(Qt::TabFocus);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    describe();
}

void OfflineComponentsHeaderView::setCheckState(Qt::CheckState state) {
    m_state = state;
    describe();
    viewport()->update();
}

void OfflineComponentsHeaderView::setCheckable(bool checkable) {
    m_isCheckable = checkable;
    setFocusPolicy(checkable ? Qt::TabFocus : Qt::NoFocus);
    viewport()->update();
}

void OfflineComponentsHeaderView::describe() {
    setAccessibleName(tr("Select all"));
    setAccessibleDescription(m_state == Qt::Checked            ? tr("All components are selected")
                             : m_state == Qt::PartiallyChecked ? tr("Some components are selected")
                                                               : tr("No component is selected"));
}

void OfflineComponentsHeaderView::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const {
    if (logicalIndex != 0) {
        QHeaderView::paintSection(painter, rect, logicalIndex);
        return;
    }
    QStyleOptionHeader head;
    initStyleOption(&head);
    head.rect = rect;
    head.text = model()->headerData(0, Qt::Horizontal).toString();
    head.textAlignment = defaultAlignment();
    style()->drawControl(QStyle::CE_HeaderSection, &head, painter, this);

    QStyleOptionViewItem box;
    box.initFrom(this);
    box.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
    box.state.setFlag(QStyle::State_Enabled, m_isCheckable && isEnabled());
    box.state |= m_state == Qt::Checked     ? QStyle::State_On
                 : m_state == Qt::Unchecked ? QStyle::State_Off
                                            : QStyle::State_NoChange;
    const QRect place(rect.left() + Tokens::Space12, rect.top() + (rect.height() - Tokens::CheckSize) / 2,
                      Tokens::CheckSize, Tokens::CheckSize);
    box.rect = QStyle::visualRect(layoutDirection(), rect, place);
    style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, painter, this);

    head.rect =
        QStyle::visualRect(layoutDirection(), rect,
                           rect.adjusted(Tokens::Space12 + Tokens::CheckSize - Tokens::Space4, 0, 0, 0));
    style()->drawControl(QStyle::CE_HeaderLabel, &head, painter, this);
    if (hasFocus())
        Paint::ring(painter, rect.adjusted(Tokens::Space4, 1, -Tokens::Space4, -2), Tokens::RadiusControl);
}

void OfflineComponentsHeaderView::toggle() {
    if (m_isCheckable)
        Q_EMIT headerCheckBoxClicked(m_state == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void OfflineComponentsHeaderView::mousePressEvent(QMouseEvent* event) {
    QHeaderView::mousePressEvent(event);
    m_isBoxPressed = event->button() == Qt::LeftButton && logicalIndexAt(event->pos()) == 0;
}

void OfflineComponentsHeaderView::mouseReleaseEvent(QMouseEvent* event) {
    QHeaderView::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && std::exchange(m_isBoxPressed, false) &&
        logicalIndexAt(event->pos()) == 0)
        toggle();
}

void OfflineComponentsHeaderView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space)
        QHeaderView::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        toggle();
}

void OfflineComponentsHeaderView::focusInEvent(QFocusEvent* event) {
    QHeaderView::focusInEvent(event);
    viewport()->update();
}

void OfflineComponentsHeaderView::focusOutEvent(QFocusEvent* event) {
    QHeaderView::focusOutEvent(event);
    viewport()->update();
}
