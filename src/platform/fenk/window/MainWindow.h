#pragma once

#include <QMainWindow>

namespace Fenk {

class TitleBar;
class WindowFrame;

/// A main window with our own title bar, which replaces the menu bar, and frame. Title and icon of the window
/// are shown in the bar. F10 opens the bar's menu, and so does the menu key unless the focused widget has a
/// menu of its own. A new window has the focus itself, so no button of the bar is focused.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);

    TitleBar* titlebar() const { return m_titlebar; }

    /// Opacity of the background, 0 to 255, with blur behind it if supported; 255 is an ordinary window.
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

/// Moves to the middle of the parent's window, or of the screen, and completely onto that screen.
void moveToMiddle(QWidget* window);

}  // namespace Fenk
