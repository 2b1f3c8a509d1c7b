#include "fenk/style/FocusRing.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QFocusEvent>
#include <QFocusFrame>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextEdit>

namespace Fenk {

namespace {

bool isField(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget);
}

bool hasRing(const QWidget* widget) {
    return isField(widget) || qobject_cast<const QAbstractButton*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSlider*>(widget);
}

bool fromKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

/// The editor inside a spin box or combo has no outline of its own.
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
    if (event->type() != QEvent::FocusIn && event->type() != QEvent::FocusOut)
        return false;
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget)
        return false;
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (event->type() == QEvent::FocusOut) {
        if (reason != Qt::PopupFocusReason)
            hide();
        return false;
    }
    QWidget* control = outlined(widget);
    if (hasRing(control) && (fromKeyboard(reason) || isField(control)))
        show(control);
    return false;
}

void FocusRing::show(QWidget* widget) {
    if (!m_frame)
        m_frame = new QFocusFrame(widget);
    m_frame->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_frame->setWidget(widget);
}

void FocusRing::hide() {
    if (m_frame)
        m_frame->setWidget(nullptr);
}

}  // namespace Fenk
