#pragma once

#include <QDialog>
#include <QIcon>

class QLabel;
class QVBoxLayout;

namespace Fenk {

class IconButton;
class Label;
class WindowFrame;

/// The frame of every dialog: our own border, icon, centred title and close button on top, below them
/// whatever the dialog holds. Can be dragged by any empty place. Escape and the close button reject. Over a
/// window of ours it floats (DialogAnchor).
class AbstractDialog : public QDialog {
    Q_OBJECT
public:
    explicit AbstractDialog(QWidget* parent = nullptr);

    /// Shown as plain text, and as the window's title for the desktop.
    void setTitle(const QString& title);
    QString title() const;
    void setIcon(const QIcon& icon);
    void setCloseButtonVisible(bool visible);

    /// Everything below the head, without margins.
    QVBoxLayout* bodyLayout() const { return m_body; }

    /// Middle of the parent's window, otherwise of the screen.
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
