#include "fenk/window/WindowFrame.h"

#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>
#include <QWindow>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/system/WindowPlatform.h"

namespace Fenk {

namespace {

constexpr int PlacementMs = 200;  ///< time for the window manager to place a new window

/// Covers one corner of the window: clears what is outside the curve and draws the border along it.
class Corner : public QWidget {
public:
    Corner(QWidget* window, Qt::Corner corner) : QWidget(window), m_corner(corner) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        resize(Tokens::RadiusWindow, Tokens::RadiusWindow);
    }

    void place() {
        const QSize room = parentWidget()->size() - size();
        move(m_corner == Qt::TopRightCorner || m_corner == Qt::BottomRightCorner ? room.width() : 0,
             m_corner == Qt::BottomLeftCorner || m_corner == Qt::BottomRightCorner ? room.height() : 0);
        raise();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF whole(QPointF(-x(), -y()), QSizeF(parentWidget()->size()));
        QPainterPath outside;
        outside.addRect(rect());
        QPainterPath inside;
        inside.addRoundedRect(whole, Tokens::RadiusWindow, Tokens::RadiusWindow);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillPath(outside.subtracted(inside), Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setPen(QPen(Theme::instance()->color(Theme::Border), Tokens::BorderWidth));
        painter.drawRoundedRect(whole.adjusted(0.5, 0.5, -0.5, -0.5), Tokens::RadiusWindow - 0.5,
                                Tokens::RadiusWindow - 0.5);
    }

private:
    Qt::Corner m_corner;
};

Qt::CursorShape cursorFor(Qt::Edges edges) {
    if (edges == (Qt::TopEdge | Qt::LeftEdge) || edges == (Qt::BottomEdge | Qt::RightEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::TopEdge | Qt::RightEdge) || edges == (Qt::BottomEdge | Qt::LeftEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}

}  // namespace

WindowFrame::WindowFrame(QWidget* window) : QObject(window), m_window(window) {
    window->setWindowFlag(Qt::FramelessWindowHint);
    if (WindowPlatform::compositing())
        window->setAttribute(Qt::WA_TranslucentBackground);
    window->installEventFilter(this);
    for (const auto corner :
         {Qt::TopLeftCorner, Qt::TopRightCorner, Qt::BottomLeftCorner, Qt::BottomRightCorner})
        m_corners.append(new Corner(window, corner));
    m_placementTimer.setSingleShot(true);
    m_placementTimer.setInterval(PlacementMs);
    connect(&m_placementTimer, &QTimer::timeout, this, &WindowFrame::adoptActualPosition);
    connect(Theme::instance(), &Theme::changed, window, [window] { window->update(); });
    update();
}

bool WindowFrame::framed() const {
    return !m_window->isMaximized() && !m_window->isFullScreen();
}

void WindowFrame::paint(QPainter* painter) const {
    const Theme* theme = Theme::instance();
    const bool seesThrough = m_window->testAttribute(Qt::WA_TranslucentBackground);
    const bool dialog = m_window->windowFlags().testFlag(Qt::Dialog);
    const QColor ground =
        withAlpha(theme->color(dialog ? Theme::Surface : Theme::Window), seesThrough ? m_alpha / 255.0 : 1);
    painter->fillRect(m_window->rect(), ground);
    if (framed())
        Paint::box(painter, m_window->rect(), 0, QColor(), theme->color(Theme::Border));
}

void WindowFrame::setTranslucent(int alpha) {
    m_alpha = qBound(0, alpha, 255);
    if (QWindow* handle = m_window->windowHandle())
        WindowPlatform::setBlurBehind(handle, m_alpha < 255);
    m_window->update();
}

void WindowFrame::update() {
    const bool round = framed() && m_window->testAttribute(Qt::WA_TranslucentBackground);
    for (QWidget* corner : m_corners) {
        corner->setVisible(round);
        if (round)
            static_cast<Corner*>(corner)->place();
    }
    const int border = framed() ? 1 : 0;
    m_window->setContentsMargins(border, border, border, border);
}

/// Some window managers move their frame after Qt has queried the position of the window, without an event.
/// Without this, Qt would move the window at the next resize.
void WindowFrame::adoptActualPosition() {
    const auto actual = WindowPlatform::actualPosition(m_window->windowHandle());
    if (framed() && actual && *actual != m_window->pos())
        m_window->move(*actual);
}

Qt::Edges WindowFrame::edgesAt(const QPoint& position) const {
    if (!framed() || m_window->minimumSize() == m_window->maximumSize())
        return {};
    const QRect inner = m_window->rect().adjusted(Tokens::ResizeBorder, Tokens::ResizeBorder,
                                                  -Tokens::ResizeBorder, -Tokens::ResizeBorder);
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, position.x() < inner.left());
    edges.setFlag(Qt::RightEdge, position.x() > inner.right());
    edges.setFlag(Qt::TopEdge, position.y() < inner.top());
    edges.setFlag(Qt::BottomEdge, position.y() > inner.bottom());
    return edges;
}

bool WindowFrame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_window->windowHandle())
        return handleWindowEvent(event);
    switch (event->type()) {
        case QEvent::Show:
            if (QWindow* handle = m_window->windowHandle()) {
                handle->installEventFilter(this);
                if (m_alpha < 255)
                    WindowPlatform::setBlurBehind(handle, true);
            }
            update();
            // Nested layouts have cached the height of wrapped text for another width.
            if (QLayout* layout = m_window->layout())
                layout->invalidate();
            m_placementTimer.start();
            break;
        case QEvent::Resize:
        case QEvent::WindowStateChange:
        case QEvent::LayoutRequest:
            update();
            break;
        default:
            break;
    }
    return false;
}

bool WindowFrame::handleWindowEvent(QEvent* event) {
    QWindow* handle = m_window->windowHandle();
    if (event->type() == QEvent::MouseMove) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->buttons() != Qt::NoButton)
            return false;
        if (const Qt::Edges edges = edgesAt(mouse->pos())) {
            handle->setCursor(cursorFor(edges));
            m_cursorSet = true;
        } else if (m_cursorSet) {
            handle->unsetCursor();
            m_cursorSet = false;
        }
    } else if (event->type() == QEvent::MouseButtonPress) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        const Qt::Edges edges = edgesAt(mouse->pos());
        if (mouse->button() == Qt::LeftButton && edges)
            return handle->startSystemResize(edges);
    }
    return false;
}

}  // namespace Fenk
