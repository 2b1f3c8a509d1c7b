#include "fenk/window/MainWindow.h"

#include <QContextMenuEvent>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

#include "fenk/window/TitleBar.h"
#include "fenk/window/WindowFrame.h"

namespace Fenk {

void moveToMiddle(QWidget* window) {
    const QWidget* over = window->parentWidget() ? window->parentWidget()->window() : nullptr;
    const QScreen* screen = over && over->isVisible() ? over->screen() : window->screen();
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    if (!window->testAttribute(Qt::WA_Resized))
        window->adjustSize();
    const QRect room = screen->availableGeometry();
    const QRect middle = over && over->isVisible() ? over->frameGeometry() : room;
    QRect place(QPoint(), window->size());
    place.moveCenter(middle.center());
    place.moveLeft(qBound(room.left(), place.left(), qMax(room.left(), room.right() - place.width() + 1)));
    place.moveTop(qBound(room.top(), place.top(), qMax(room.top(), room.bottom() - place.height() + 1)));
    window->move(place.topLeft());
}

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent, Qt::Window), m_titlebar(new TitleBar(this)), m_frame(new WindowFrame(this)) {
    setMenuWidget(m_titlebar);
    setFocus();
}

void MainWindow::setBackgroundAlpha(int alpha) {
    m_frame->setTranslucent(alpha);
}

void MainWindow::moveToCenter() {
    moveToMiddle(this);
}

void MainWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    m_frame->paint(&painter);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_F10 || event->modifiers() || !m_titlebar->openMenu(true))
        QMainWindow::keyPressEvent(event);
}

void MainWindow::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard || !m_titlebar->openMenu(true))
        event->ignore();
}

bool MainWindow::event(QEvent* event) {
    if (event->type() == QEvent::WindowTitleChange)
        m_titlebar->setTitle(windowTitle());
    else if (event->type() == QEvent::WindowIconChange)
        m_titlebar->setIcon(windowIcon());
    return QMainWindow::event(event);
}

}  // namespace Fenk
