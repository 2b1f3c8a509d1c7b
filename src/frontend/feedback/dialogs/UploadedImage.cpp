#include "feedback/dialogs/UploadedImage.h"

#include <QKeyEvent>
#include <QPainterPath>
#include <QPushButton>

#include "feedback/dialogs/UploadedImageHoverWidget.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;
using State = ImageUploads::State;

namespace {

constexpr double VeilOpacity = 0.7;

QPixmap cover(const QImage& image, const QSize& size) {
    if (image.isNull())
        return {};
    const QImage scaled = image.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    return QPixmap::fromImage(scaled.copy(
        QRect(QPoint((scaled.width() - size.width()) / 2, (scaled.height() - size.height()) / 2), size)));
}

}  // namespace

UploadedImage::UploadedImage(const ImageUploads::Image& image, QWidget* parent)
    : QAbstractButton(parent),
      m_name(image.picture.name),
      m_hover(new UploadedImageHoverWidget(this)),
      m_retry(new QPushButton(tr("Retry"), this)) {
    setObjectName(image.id);
    setFixedSize(Width, Height);
    setFocusPolicy(Qt::StrongFocus);
    setRingRadius(this, Tokens::RadiusControl);
    m_retry->setObjectName("feedback_retryimagebtn");
    m_retry->setAccessibleName(tr("Upload %1 again").arg(m_name));
    m_retry->setAutoDefault(false);
    m_retry->setGeometry(rect().adjusted(Tokens::Space8, Height - Tokens::CompactHeight - Tokens::Space4,
                                         -Tokens::Space8, -Tokens::Space4));
    connect(m_retry, &QPushButton::clicked, this, &UploadedImage::retryWanted);
    m_thumbnail = cover(image.picture.thumbnail, size() * devicePixelRatioF());
    m_thumbnail.setDevicePixelRatio(devicePixelRatioF());
    setToolTip(plainToolTip(m_name));
    connect(this, &QAbstractButton::clicked, this, &UploadedImage::removalWanted);
    showState(image);
}

void UploadedImage::showState(const ImageUploads::Image& image) {
    m_state = image.state;
    m_progress = image.picture.bytes > 0 ? qMin(1.0, qreal(image.sent) / image.picture.bytes) : 0;
    setAccessibleName(tr("Picture %1").arg(m_name));
    setAccessibleDescription(stateText());
    const bool hasFailed = m_state == State::Failed;
    if (!hasFailed && m_retry->hasFocus())
        setFocus(Qt::OtherFocusReason);
    m_retry->setVisible(hasFailed);
    m_hover->setGeometry(freeRect());
    update();
}

QString UploadedImage::stateText() const {
    if (m_state == State::Failed)
        return tr("Upload failed");
    return m_state == State::Uploading ? tr("%1 %").arg(qRound(100 * m_progress)) : QString();
}

QRect UploadedImage::freeRect() const {
    return m_state == State::Failed ? QRect(0, 0, Width, m_retry->y() - Tokens::Space4) : rect();
}

void UploadedImage::drawText(QPainter* painter, const QString& text, Theme::Role role) const {
    painter->setFont(Theme::instance()->font(Theme::SmallStrong));
    painter->setPen(Paint::color(role));
    painter->drawText(freeRect().adjusted(Tokens::Space4, 0, -Tokens::Space4, 0),
                      Qt::AlignCenter | Qt::TextWrapAnywhere, text);
}

void UploadedImage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QPainterPath shape;
    shape.addRoundedRect(rect(), Tokens::RadiusControl, Tokens::RadiusControl);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(shape);
    painter.fillRect(rect(), Paint::color(Theme::Sunken));
    if (m_thumbnail.isNull() && m_state != State::Failed && m_state != State::Uploading)
        drawText(&painter, m_name, Theme::Secondary);
    painter.drawPixmap(rect(), m_thumbnail);
    if (m_state == State::Uploading || m_state == State::Failed) {
        QColor veil = Paint::color(Theme::Surface);
        veil.setAlphaF(VeilOpacity);
        painter.fillRect(rect(), veil);
        if (m_hover->isHidden())
            drawText(&painter, stateText(), m_state == State::Failed ? Theme::Danger : Theme::Text);
    }
    if (m_state == State::Uploading) {
        const QRectF track(0, height() - Tokens::ProgressHeight, width(), Tokens::ProgressHeight);
        painter.fillRect(track, Paint::color(Theme::Sunken));
        painter.fillRect(QRectF(track.topLeft(), QSizeF(track.width() * m_progress, track.height())),
                         Paint::color(Theme::Accent));
    }
    Paint::box(&painter, rect(), Tokens::RadiusControl, Qt::transparent,
               Paint::color(m_state == State::Failed ? Theme::Danger : Theme::Border));
}

void UploadedImage::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        Q_EMIT removalWanted();
    else
        QAbstractButton::keyPressEvent(event);
}

void UploadedImage::enterEvent(QEvent* event) {
    QAbstractButton::enterEvent(event);
    updateHover();
}

void UploadedImage::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    updateHover();
}

void UploadedImage::focusInEvent(QFocusEvent* event) {
    QAbstractButton::focusInEvent(event);
    updateHover();
}

void UploadedImage::focusOutEvent(QFocusEvent* event) {
    QAbstractButton::focusOutEvent(event);
    updateHover();
}

void UploadedImage::updateHover() {
    m_hover->setVisible(underMouse() || hasFocus());
}
