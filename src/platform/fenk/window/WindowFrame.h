#pragma once

#include <QObject>
#include <QTimer>
#include <QVector>

class QPainter;
class QWidget;

namespace Fenk {

/// Gives a top-level widget our own frame instead of the window manager's: ground and border, round corners
/// where a compositor runs and square ones where not, edges that resize. Owned by its window; the window
/// calls paint() first thing. Sizes of the window are those of what one sees: nothing is added around it.
class WindowFrame : public QObject {
    Q_OBJECT
public:
    explicit WindowFrame(QWidget* window);

    /// Paints ground and border into the window.
    void paint(QPainter* painter) const;

    /// Opacity of the ground, 0 to 255, and blur behind it; opaque all the same without a compositor.
    void setTranslucent(int alpha);

    /// Round corners and a border of its own: false while maximised or full screen.
    bool framed() const;

    /// Edges under a point in window coordinates that a press there would drag; none for windows of fixed
    /// size.
    Qt::Edges edgesAt(const QPoint& position) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();
    void takeActualPosition();
    bool handleWindowEvent(QEvent* event);

    QWidget* m_window;
    QVector<QWidget*> m_corners;
    QTimer m_settle;
    int m_alpha = 255;
    bool m_cursorSet = false;
};

}  // namespace Fenk
