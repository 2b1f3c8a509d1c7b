#include "core/WindowMonitor.h"

#include <QDebug>
#include <QEvent>
#include <QWidget>

WindowMonitor::WindowMonitor(QObject* parent) : QObject(parent) {}

void WindowMonitor::logWindow(const QWidget* widget) {
    qInfo() << "Top-level window objectname:" << widget->objectName()
            << " className:" << widget->metaObject()->className() << " Title: " << widget->windowTitle()
            << " winid: " << widget->winId();
}

bool WindowMonitor::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Destroy) {
        m_windows.remove(static_cast<QWidget*>(object));
    } else if (event->type() == QEvent::Show && object->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(object);
        if (widget->isWindow() && !m_windows.contains(widget)) {
            m_windows.insert(widget);
            logWindow(widget);
        }
        if (widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog)
            Q_EMIT shown();
    }
    return QObject::eventFilter(object, event);
}
