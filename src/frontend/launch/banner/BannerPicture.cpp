#include "launch/banner/BannerPicture.h"

#include <QPainter>

#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"

using namespace Fenk;

namespace {

constexpr qreal MaxEnlargement = 2;

}  // namespace

BannerPicture::BannerPicture(int side, QWidget* parent) : QWidget(parent) {
    setFixedSize(side, side);
    connect(Theme::instance(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void BannerPicture::setIcon(const QIcon& icon) {
    m_icon = icon;
    update();
}

void BannerPicture::setTint(Theme::Role role) {
    m_tint = role;
    update();
}

void BannerPicture::setOpacity(qreal opacity) {
    m_opacity = opacity;
    update();
}

void BannerPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    if (m_tint) {
        painter.drawPixmap(rect(), tintedPixmap(m_icon, size(), devicePixelRatioF(), Paint::color(*m_tint)));
        return;
    }
    QPixmap picture = m_icon.pixmap(window()->windowHandle(), size());
    picture.setDevicePixelRatio(1);
    if (picture.isNull())
        return;
    const QSizeF room = size();
    const QSizeF most = QSizeF(picture.size()) * MaxEnlargement;
    const QSizeF drawn = QSizeF(picture.size()).scaled(room.boundedTo(most), Qt::KeepAspectRatio);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(Paint::centred(rect(), drawn.width(), drawn.height()), picture, picture.rect());
}
