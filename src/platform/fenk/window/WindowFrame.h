#pragma once

#include <QObject>
#include <QTimer>
#include <QVector>

class QPainter;
class QWidget;

namespace Fenk {

/// Gives a top-level widget our own frame instead of the window manager's: background, border, resizable
/// edges, and rounded corners if there is a compositor. Owned by the window, which calls paint() first in its
/// paint event. The size of the window is that of its visible part; there is no margin around it.
class WindowFrame : public QObject {
    Q_OBJECT
public:
    explicit WindowFrame(QWidget* window);

    /// Paints background and border into the window.
    void paint(QPainter* painter) const;

    /// Opacity of the background, 0 to 255, with blur behind it; always opaque without a compositor.
    void setTranslucent(int alpha);

    /// Whether the window has rounded corners and a border; false while maximised or full screen.
    bool framed() const;

    /// The edges that a press at `position` (in window coordinates) would drag; none for windows of fixed
    /// size.
    Qt::Edges edgesAt(const QPoint& position) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();
    void adoptActualPosition();
    bool handleWindowEvent(QEvent* event);

    QWidget* m_window;
    QVector<QWidget*> m_corners;
    QTimer m_placementTimer;
    int m_alpha = 255;
    bool m_cursorSet = false;
};

}  // namespace Fenk
