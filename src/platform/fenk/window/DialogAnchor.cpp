#include "fenk/window/DialogAnchor.h"

#include <QEvent>

#include "fenk/window/MainWindow.h"
#include "fenk/window/Veil.h"

namespace Fenk {

namespace {

bool canHaveFocus(const QWidget* widget) {
    return widget && widget->isVisible() && widget->isEnabled() && widget->focusPolicy() != Qt::NoFocus;
}

}  // namespace

DialogAnchor::DialogAnchor(QWidget* dialog) : QObject(dialog), m_dialog(dialog) {
    dialog->installEventFilter(this);
}

DialogAnchor::~DialogAnchor() {
    detach();
}

bool DialogAnchor::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_dialog) {
        // A spontaneous show event only restores a minimised dialog.
        if (event->type() == QEvent::Show && !event->spontaneous())
            attach();
        else if (event->type() == QEvent::Hide && !event->spontaneous())
            detach();
    } else if (watched == m_window && (event->type() == QEvent::Move || event->type() == QEvent::Resize)) {
        moveWithWindow();
    }
    return false;
}

void DialogAnchor::attach() {
    QWidget* window = m_dialog->parentWidget() ? m_dialog->parentWidget()->window() : nullptr;
    if (m_window || !window || !window->isVisible())
        return;
    m_window = window;
    m_middle = window->geometry().center();
    m_focusChain.clear();
    for (QWidget* widget = window->focusWidget(); widget && widget != window; widget = widget->parentWidget())
        m_focusChain.append(widget);
    window->installEventFilter(this);
    moveToMiddle(m_dialog);
    m_veil = Veil::of(window);
    m_veil->add(m_dialog);
}

void DialogAnchor::detach() {
    if (!m_window)
        return;
    m_window->removeEventFilter(this);
    if (m_veil)
        m_veil->remove(m_dialog);
    if (m_dialog->isActiveWindow())
        m_window->activateWindow();
    restoreFocus();
    m_window.clear();
}

void DialogAnchor::moveWithWindow() {
    const QPoint middle = m_window->geometry().center();
    if (middle != m_middle)
        m_dialog->move(m_dialog->pos() + middle - m_middle);
    m_middle = middle;
}

/// Does nothing if another control has taken the focus meanwhile.
void DialogAnchor::restoreFocus() const {
    if (canHaveFocus(m_window->focusWidget()))
        return;
    for (const QPointer<QWidget>& widget : m_focusChain) {
        if (canHaveFocus(widget)) {
            widget->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
    m_window->setFocus(Qt::OtherFocusReason);
}

}  // namespace Fenk
