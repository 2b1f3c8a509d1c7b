#pragma once

#include <QDialog>
#include <QIcon>

class QLabel;
class QVBoxLayout;

namespace Fenk {

class IconButton;
class Label;
class WindowFrame;

/// Base of all dialogs: border, icon, centred title and close button, with the content below. Can be dragged
/// anywhere outside its controls. Escape and the close button reject. Positioned over its window by
/// DialogAnchor.
class AbstractDialog : public QDialog {
    Q_OBJECT
public:
    explicit AbstractDialog(QWidget* parent = nullptr);

    /// Shown as plain text and used as the window title.
    void setTitle(const QString& title);
    QString title() const;
    /// A title that needs more lines is elided; its tool tip has all of it. By default none is.
    void setTitleLines(int lines);
    void setIcon(const QIcon& icon);
    void setCloseButtonVisible(bool visible);

    /// Everything below the title, without margins.
    QVBoxLayout* bodyLayout() const { return m_body; }

    /// Moves to the middle of the parent's window, or of the screen.
    void moveToCenter();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    WindowFrame* m_frame;
    QLabel* m_icon;
    Label* m_title;
    IconButton* m_close;
    QVBoxLayout* m_body;
    QPoint m_pressedAt;
    bool m_pressed = false;
};

}  // namespace Fenk
