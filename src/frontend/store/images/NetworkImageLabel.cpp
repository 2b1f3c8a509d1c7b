#include "store/images/NetworkImageLabel.h"

#include <QPainter>
#include <QPainterPath>
#include <utility>

#include "fenk/style/Paint.h"
#include "fenk/style/Tokens.h"
#include "store/images/LoadingAnimation.h"
#include "store/images/NetworkImageLoader.h"

using namespace Fenk;

NetworkImageLabel::NetworkImageLabel(QWidget* parent) : QWidget(parent), m_radius(Tokens::RadiusCard) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

NetworkImageLabel::~NetworkImageLabel() {
    abortLoad();
    LoadingAnimation::instance()->remove(this);
}

void NetworkImageLabel::abortLoad() {
    disconnect(m_loaded);
    if (std::exchange(m_isWaiting, false))
        NetworkImageLoader::instance()->release(m_url);
    m_url.clear();
}

void NetworkImageLabel::setUrl(const QUrl& url) {
    setPixmap({});
    m_url = url;
    // First, because a picture on disk arrives inside load().
    m_loaded = connect(NetworkImageLoader::instance(), &NetworkImageLoader::imageLoaded, this,
                       [this](const QUrl& of, const QPixmap& pixmap) {
                           if (of != m_url)
                               return;
                           m_isWaiting = false;
                           setPixmap(pixmap);
                           Q_EMIT loaded();
                       });
    m_isWaiting = true;
    NetworkImageLoader::instance()->load(url);
}

void NetworkImageLabel::setPixmap(const QPixmap& pixmap) {
    abortLoad();
    m_pixmap = pixmap;
    m_scaled = {};
    updateAnimation();
    update();
}

void NetworkImageLabel::updateAnimation() {
    if (isLoading() && isVisible())
        LoadingAnimation::instance()->add(this);
    else
        LoadingAnimation::instance()->remove(this);
}

void NetworkImageLabel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    updateAnimation();
}

void NetworkImageLabel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    updateAnimation();
}

void NetworkImageLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QPainterPath shape;
    shape.addRoundedRect(rect(), m_radius, m_radius);
    painter.setClipPath(shape);
    if (isLoading()) {
        painter.drawPixmap(rect(), LoadingAnimation::instance()->frame());
        return;
    }
    const QSize wanted = size() * devicePixelRatioF();
    if (m_scaled.isNull() ||
        qMax(m_scaled.width(), m_scaled.height()) != qMax(wanted.width(), wanted.height()))
        m_scaled = m_pixmap.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    m_scaled.setDevicePixelRatio(devicePixelRatioF());
    const QSizeF shown = QSizeF(m_scaled.size()) / devicePixelRatioF();
    painter.drawPixmap(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), m_scaled);
}
