#pragma once

#include <QIcon>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QMenu;

namespace Fenk {

class IconButton;

/// The title bar of a MainWindow: icon, title or a custom widget in the middle, menu button and window
/// buttons. Dragging moves the window, a double click maximises it. The menu ends with the standard entries:
/// theme, About, Exit.
class TitleBar : public QWidget {
    Q_OBJECT
public:
    explicit TitleBar(QWidget* parent);

    void setIcon(const QIcon& icon);
    void setTitle(const QString& title);
    QString title() const;

    /// Appends the standard entries and takes ownership. menu() is never null.
    void setMenu(QMenu* menu);
    QMenu* menu() const { return m_menu; }
    void setMenuVisible(bool visible);
    /// Opens the menu as the menu button does; `byKeyboard` selects the first entry. False if the menu is
    /// hidden.
    bool openMenu(bool byKeyboard);

    /// Replaces the title in the middle; the previous widget is deleted. Null restores the title.
    void setCustomWidget(QWidget* widget);
    QWidget* customWidget() const { return m_custom; }

    /// Beside the icon (AlignLeft) or before the menu button (AlignRight).
    void addWidget(QWidget* widget, Qt::Alignment side = Qt::AlignRight);

    /// Hides the buttons whose window hints are in `flags`; other flags are stored without effect.
    void setDisableFlags(Qt::WindowFlags flags);
    Qt::WindowFlags disableFlags() const { return m_disabled; }

    /// A line below the bar, for windows with scrolling content.
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
