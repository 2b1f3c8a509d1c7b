#include "fenk/style/ButtonKeys.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>

namespace Fenk {

ButtonKeys::ButtonKeys(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool ButtonKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* button = qobject_cast<QAbstractButton*>(watched);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (!button || !isReturn || (key->modifiers() & ~Qt::KeypadModifier) || button->isCheckable() ||
        !button->isEnabled())
        return false;
    if (!key->isAutoRepeat())
        button->click();
    return true;
}

}  // namespace Fenk
