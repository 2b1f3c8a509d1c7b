#include "store/view/HotLabel.h"

#include <QIcon>
#include <QPainter>

#include "fenk/style/Theme.h"
#include "store/view/StoreImages.h"

using Fenk::Theme;

namespace {
constexpr QSize Size(22, 11);
}

HotLabel::HotLabel(QWidget* parent) : QWidget(parent) {
    setObjectName("hotlabel");
    setAccessibleName("hotlabel");
    setAccessibleDescription(tr("Recommended"));
    setToolTip(tr("Recommended"));
    setFixedSize(Size);
    connect(Theme::instance(), &Theme::themeTypeChanged, this, [this] {
        m_picture = {};
        update();
    });
}

void HotLabel::paintEvent(QPaintEvent*) {
    const qreal ratio = devicePixelRatioF();
    if (m_picture.isNull() || m_picture.devicePixelRatio() != ratio) {
        const bool isLight = Theme::instance()->colorType() == Theme::Light;
        const QIcon icon(storeImage(isLight ? "hot_label.svg" : "hot_label_dark.svg"));
        m_picture = icon.pixmap(Size * ratio);
        m_picture.setDevicePixelRatio(ratio);
    }
    QPainter(this).drawPixmap(0, 0, m_picture);
}
