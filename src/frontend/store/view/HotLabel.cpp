#include "store/view/HotLabel.h"

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
    if (m_picture.isNull())
        m_picture = QIcon(storeImage(Theme::instance()->isDark() ? "hot_label_dark.svg" : "hot_label.svg"));
    QPainter painter(this);
    m_picture.paint(&painter, rect());
}
