#pragma once

#include <QIcon>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QMenu;

namespace Fenk {

class IconButton;

/// The top of a MainWindow: icon, title or a widget of the window's own in the middle, menu and window
/// buttons. Dragging it moves the window, a double click maximises it. The menu ends with the entries that
/// every program has: theme, About, Exit.
class TitleBar : public QWidget {
    Q_OBJECT
public:
    explicit TitleBar(QWidget* parent);

    void setIcon(const QIcon& icon);
    void setTitle(const QString& title);
    QString title() const;

    /// The standard entries are appended to it; the bar takes it over. menu() is never null.
    void setMenu(QMenu* menu);
    QMenu* menu() const { return m_menu; }
    void setMenuVisible(bool visible);
    /// As with the menu button, with the first entry chosen for a user at the keyboard. False where the menu
    /// is hidden.
    bool openMenu(bool byKeyboard);

    /// Takes the middle in place of the title; the former one is deleted. A null pointer brings the title
    /// back.
    void setCustomWidget(QWidget* widget);
    QWidget* customWidget() const { return m_custom; }

    /// Beside the icon (AlignLeft) or before the menu button (AlignRight).
    void addWidget(QWidget* widget, Qt::Alignment side = Qt::AlignRight);

    /// Hides the buttons whose window hints are among the flags; other flags are kept and mean nothing here.
    void setDisableFlags(Qt::WindowFlags flags);
    Qt::WindowFlags disableFlags() const { return m_disabled; }

    /// A line under the bar, for windows whose content scrolls beneath it.
    void setSeparatorVisible(bool visible);

    QSize sizeHint() const override;

Q_SIGNALS:
    void aboutToShowMenu();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    bool maximizable() const;
    void toggleMaximized();
    void updateButtons();
    void placeMiddle();

    QLabel* m_icon;
    QLabel* m_title;
    QWidget* m_left;
    QWidget* m_right;
    QHBoxLayout* m_leftLayout;
    QHBoxLayout* m_rightLayout;
    QWidget* m_custom = nullptr;
    QMenu* m_menu = nullptr;
    IconButton* m_menuButton;
    IconButton* m_minimize;
    IconButton* m_maximize;
    IconButton* m_close;
    Qt::WindowFlags m_disabled;
    QPoint m_pressedAt;
    bool m_pressed = false;
    bool m_separator = false;
};

}  // namespace Fenk
