#include "shell/properties/AppEntryIconEditor.h"

#include <QFocusEvent>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "programs/ProgramIcons.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {

constexpr int Edge = Tokens::IconBanner;
constexpr qreal VeilOpacity = 0.6;

bool hasCorners(const QImage& image) {
    const int right = image.width() - 1, bottom = image.height() - 1;
    return qAlpha(image.pixel(0, 0)) == 255 && qAlpha(image.pixel(right, 0)) == 255 &&
           qAlpha(image.pixel(0, bottom)) == 255 && qAlpha(image.pixel(right, bottom)) == 255;
}

}  // namespace

AppEntryIconEditor::AppEntryIconEditor(QWidget* parent) : QAbstractButton(parent) {
    setFixedSize(Edge, Edge);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setRingRadius(this, Edge / 2);
    setAccessibleName(tr("Change the icon"));
    setToolTip(tr("Change the icon"));
    connect(ProgramIcons::instance(), &ProgramIcons::ready, this, [this](const QString& file) {
        if (file == m_file)
            showPicture();
    });
}

QSize AppEntryIconEditor::sizeHint() const {
    return {Edge, Edge};
}

void AppEntryIconEditor::setFile(const QString& file) {
    m_file = file;
    showPicture();
}

void AppEntryIconEditor::showPicture() {
    auto* icons = ProgramIcons::instance();
    const qreal ratio = devicePixelRatioF();
    QPixmap picture = icons->picture(m_file, qRound(Tokens::IconTile * ratio));
    if (picture.isNull())
        return;  // ready() follows
    m_fills = hasCorners(picture.toImage());
    if (m_fills) {
        const QPixmap large = icons->picture(m_file, qRound(Edge * ratio));
        if (large.isNull())
            return;
        picture = large;
    }
    m_picture = picture;
    update();
}

void AppEntryIconEditor::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    Paint::box(&painter, rect(), Edge / 2.0, Paint::color(Theme::Sunken), Paint::color(Theme::Border));
    QPainterPath circle;
    circle.addEllipse(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    if (!m_picture.isNull()) {
        QSizeF size = QSizeF(m_picture.size()) / devicePixelRatioF();
        if (m_fills)
            size.scale(Edge, Edge, Qt::KeepAspectRatioByExpanding);
        QRectF place(QPointF(), size);
        place.moveCenter(QRectF(rect()).center());
        QBrush brush(m_picture);
        brush.setTransform(QTransform::fromTranslate(place.x(), place.y())
                               .scale(size.width() / m_picture.width(), size.height() / m_picture.height()));
        // Fills with a brush, because the edge of a clip is not antialiased.
        QPainterPath inside = circle;
        if (!m_fills) {
            inside = QPainterPath();
            inside.addRect(place);
        }
        painter.fillPath(inside, brush);
    }
    if (!isEnabled() || !(underMouse() || m_focusByKey || isDown()))
        return;
    // Dark in both themes, because the picture of the pen is light.
    painter.fillPath(circle, withAlpha(Theme::instance()->color(Theme::Dark, Theme::Window), VeilOpacity));
    QRect pen(0, 0, Tokens::IconLarge, Tokens::IconLarge);
    pen.moveCenter(rect().center());
    QIcon(widgetImage("dark/text_edit.svg")).paint(&painter, pen);
}

void AppEntryIconEditor::focusInEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    m_focusByKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    QAbstractButton::focusInEvent(event);
    update();
}

void AppEntryIconEditor::focusOutEvent(QFocusEvent* event) {
    m_focusByKey = false;
    QAbstractButton::focusOutEvent(event);
    update();
}

bool AppEntryIconEditor::hitButton(const QPoint& position) const {
    return QLineF(position, QRectF(rect()).center()).length() <= Edge / 2.0;
}
