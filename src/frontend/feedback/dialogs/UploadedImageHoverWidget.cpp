#include "feedback/dialogs/UploadedImageHoverWidget.h"

#include "fenk/style/Paint.h"

using namespace Fenk;

namespace {
constexpr double Opacity = 0.85;
}

UploadedImageHoverWidget::UploadedImageHoverWidget(QWidget* image) : QWidget(image) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void UploadedImageHoverWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QColor ground = Paint::color(Theme::Surface);
    ground.setAlphaF(Opacity);
    Paint::box(&painter, rect(), Tokens::RadiusControl, ground, Paint::color(Theme::Border));
    painter.setFont(Theme::instance()->font(Theme::Small));
    painter.setPen(Paint::color(Theme::Text));
    if (height() < Tokens::RowHeight) {
        painter.drawText(rect(), Qt::AlignCenter, tr("Remove"));
        return;
    }
    const QRect place =
        Paint::centred(rect(), Tokens::IconLarge, Tokens::IconLarge).translated(0, -Tokens::Space8).toRect();
    Theme::icon("fenk-delete").paint(&painter, place);
    painter.drawText(rect().adjusted(0, 0, 0, -Tokens::Space8), Qt::AlignHCenter | Qt::AlignBottom,
                     tr("Remove"));
}
