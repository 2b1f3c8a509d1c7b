#include "support/KeyWalk.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QButtonGroup>
#include <QComboBox>
#include <QFocusFrame>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QWindow>

namespace TestSupport {

namespace {

constexpr int MostKeys = 100;

QString nameOf(QWidget* widget) {
    const QString name = QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    return name.isEmpty() ? widget->metaObject()->className() + (' ' + widget->objectName()) : name;
}

QList<QWidget*> walk(QWidget* window) {
    QList<QWidget*> stops;
    for (int keys = 0; keys < MostKeys; ++keys) {
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        QCoreApplication::processEvents();
        QWidget* now = window->focusWidget();
        // A text moves from link to link before Tab leaves it.
        if (!stops.isEmpty() && now == stops.last())
            continue;
        if (!now || stops.contains(now))
            break;
        stops << now;
    }
    return stops;
}

bool isControl(const QWidget* widget) {
    const bool isPart = qobject_cast<QLineEdit*>(widget->parentWidget()) ||
                        qobject_cast<QAbstractSpinBox*>(widget->parentWidget()) ||
                        qobject_cast<QComboBox*>(widget->parentWidget()) ||
                        qobject_cast<const QHeaderView*>(widget);
    // Of a group Tab reaches the checked one, and arrow keys the others.
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const bool isInGroup =
        button && (button->autoExclusive() || (button->group() && button->group()->exclusive()));
    if (isInGroup && !button->isChecked())
        return false;
    // The head row of a table, unless one can do something with it by keys.
    if (qobject_cast<const QHeaderView*>(widget) && widget->focusPolicy() == Qt::NoFocus)
        return false;
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (label && label->text().contains("<a href"))
        return true;
    return !isPart &&
           (qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
            qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QAbstractItemView*>(widget));
}

/// Lists draw the ring inside, and texts mark the link.
bool hasRing(QWidget* window, const QWidget* control) {
    if (qobject_cast<const QAbstractItemView*>(control) || qobject_cast<const QLabel*>(control))
        return true;
    const QList<QFocusFrame*> frames = window->findChildren<QFocusFrame*>();
    return std::any_of(frames.begin(), frames.end(), [control](const QFocusFrame* frame) {
        return frame->isVisible() && frame->widget() == control;
    });
}

}  // namespace

QString outOfReach(QWidget* window) {
    QStringList names;
    QWidget* start = window->focusWidget();
    const QList<QWidget*> stops = walk(window);
    for (int i = 0; i < stops.size(); ++i) {
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        QCoreApplication::processEvents();
        QWidget* now = window->focusWidget();
        if (isControl(now) && !hasRing(window, now))
            names << nameOf(now) + " has no ring";
    }
    const QList<QWidget*> all = window->findChildren<QWidget*>();
    for (QWidget* widget : all) {
        if (widget->window() == window && isControl(widget) && widget->isVisible() && widget->isEnabled() &&
            !stops.contains(widget))
            names << nameOf(widget);
    }
    if (start)
        start->setFocus();
    return names.join(", ");
}

void press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    const QPointer<QWindow> handle = window->windowHandle();
    QTest::keyPress(handle, key, modifiers);
    if (handle)
        QTest::keyRelease(handle, key, modifiers);
}

}  // namespace TestSupport
