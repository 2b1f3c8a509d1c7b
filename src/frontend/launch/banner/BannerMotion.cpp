#include "launch/banner/BannerMotion.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/banner/BannerPicture.h"

using namespace Fenk;

namespace {

constexpr qreal FailedIconOpacity = 0.6;

}  // namespace

BannerMotion::BannerMotion(QWidget* banner, BannerPicture* icon, QWidget* changing, QWidget* failed)
    : QObject(banner),
      m_banner(banner),
      m_icon(icon),
      m_changing(changing),
      m_failed(failed),
      m_opacity(new QGraphicsOpacityEffect(this)) {
    m_changing->setGraphicsEffect(m_opacity);
    m_opacity->setEnabled(false);
    m_fade.setDuration(Tokens::FadeMs);
    m_height.setDuration(Tokens::MoveMs);
    m_height.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_height, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& height) { m_banner->setFixedSize(m_banner->width(), height.toInt()); });
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& opacity) { showFade(opacity.toReal()); });
    connect(&m_fade, &QVariantAnimation::finished, this, &BannerMotion::endFade);
}

bool BannerMotion::isAnimated() const {
    return m_banner->isVisible() && Theme::instance()->animationsEnabled();
}

void BannerMotion::moveHeight(int height) {
    m_height.stop();
    if (!isAnimated()) {
        m_banner->setFixedSize(m_banner->width(), height);
        return;
    }
    m_height.setStartValue(m_banner->height());
    m_height.setEndValue(height);
    m_height.start();
}

void BannerMotion::fadeFailedIn() {
    fade(0, 1);
}

void BannerMotion::fadeFailedOut() {
    leaveFailedPicture();
    fade(1, 0);
}

void BannerMotion::leaveFailedPicture() {
    delete m_leftover;
    if (!m_failed->isVisible() || !isAnimated())
        return;
    m_opacity->setEnabled(false);
    const qreal ratio = m_banner->devicePixelRatioF();
    QPixmap picture(m_failed->size() * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    m_failed->render(&picture, {}, {}, QWidget::DrawChildren);
    QWidget* content = m_changing->parentWidget();
    m_leftover = new QLabel(content);
    m_leftover->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_leftover->setPixmap(picture);
    m_leftover->setGraphicsEffect(new QGraphicsOpacityEffect(m_leftover));
    m_leftover->setGeometry(QRect(m_failed->mapTo(content, QPoint()), m_failed->size()));
    m_leftover->show();
}

void BannerMotion::fade(qreal from, qreal to) {
    m_fade.stop();
    m_fade.setStartValue(from);
    m_fade.setEndValue(to);
    if (isAnimated()) {
        m_opacity->setEnabled(to > from);
        m_fade.start();
    } else {
        showFade(to);
        endFade();
    }
}

/// `failed` is how much of the failed look is there.
void BannerMotion::showFade(qreal failed) {
    m_icon->setOpacity(1 - failed * (1 - FailedIconOpacity));
    m_opacity->setOpacity(failed);
    if (m_leftover)
        static_cast<QGraphicsOpacityEffect*>(m_leftover->graphicsEffect())->setOpacity(failed);
}

void BannerMotion::endFade() {
    m_opacity->setEnabled(false);
    delete m_leftover;
}
