#pragma once

#include <QMainWindow>

namespace Fenk {

class TitleBar;
class WindowFrame;

/// A window with our own title bar and frame. Everything else is QMainWindow's; the title bar takes the place
/// of its menu bar. The window's title and icon show in the bar too. F10 opens the bar's menu, and so does
/// the menu key where nothing that has the focus has a menu of its own. A new window has the focus itself, so
/// that none of the bar's buttons is chosen unasked.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);

    TitleBar* titlebar() const { return m_titlebar; }

    /// Opacity of the ground from 0 to 255 with blur behind it, where the desktop can; 255 is the ordinary
    /// window.
    void setBackgroundAlpha(int alpha);

    void moveToCenter();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;

private:
    TitleBar* m_titlebar;
    WindowFrame* m_frame;
};

/// Middle of the parent's window, or of the screen, with the whole window on that screen.
void moveToMiddle(QWidget* window);

}  // namespace Fenk
