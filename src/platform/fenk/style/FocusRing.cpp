#include "fenk/style/FocusRing.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QFocusFrame>
#include <QLineEdit>
#include <QScrollBar>

#include "fenk/style/WidgetLook.h"

namespace Fenk {

namespace {

bool isField(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           hasTextAreaLook(widget);
}

bool hasRing(const QWidget* widget) {
    return isField(widget) || qobject_cast<const QAbstractButton*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSlider*>(widget) ||
           hasRingRadius(widget);
}

bool fromKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

/// The editor inside a spin or combo box has no outline of its own.
QWidget* outlined(QWidget* widget) {
    QWidget* parent = widget->parentWidget();
    if (qobject_cast<QAbstractSpinBox*>(parent) || qobject_cast<QComboBox*>(parent))
        return parent;
    return widget;
}

}  // namespace

FocusRing::FocusRing(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

FocusRing::~FocusRing() {
    delete m_frame;
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            m_keyboard = false;
            if (m_frame && !isField(m_frame->widget()))
                hide();
            break;
        case QEvent::KeyPress:
            m_keyboard = true;
            break;
        case QEvent::FocusOut:
            if (watched->isWidgetType() && static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason)
                hide();
            break;
        case QEvent::FocusIn:
            if (auto* widget = qobject_cast<QWidget*>(watched))
                onFocusIn(widget, static_cast<QFocusEvent*>(event)->reason());
            break;
        default:
            break;
    }
    return false;
}

void FocusRing::onFocusIn(QWidget* widget, Qt::FocusReason reason) {
    // Dialogs send the focus event to their first control before their window is active.
    if (!widget->hasFocus())
        return;
    QWidget* control = outlined(widget);
    const bool byProgram = reason == Qt::OtherFocusReason || reason == Qt::ActiveWindowFocusReason;
    const bool editable = isField(control) && !control->property("readOnly").toBool();
    if (hasRing(control) && (editable || fromKeyboard(reason) || (byProgram && m_keyboard)))
        show(control);
}

void FocusRing::show(QWidget* widget) {
    if (!m_frame)
        m_frame = new QFocusFrame(widget);
    m_frame->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_frame->setWidget(widget);
    // A frame hides outside its scroll area and does not come back when the area has scrolled to the control.
    QMetaObject::invokeMethod(
        this,
        [this, shown = QPointer<QWidget>(widget)] {
            if (!shown || !m_frame || m_frame->widget() != shown || m_frame->isVisible())
                return;
            m_frame->setWidget(nullptr);
            m_frame->setWidget(shown);
        },
        Qt::QueuedConnection);
}

void FocusRing::hide() {
    if (m_frame)
        m_frame->setWidget(nullptr);
}

}  // namespace Fenk
