#include "shell/DropFrame.h"

#include <QPainter>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

DropFrame::DropFrame(QWidget* parent) : QWidget(parent) {
    setObjectName("drop_frame");
    setAccessibleName(tr("Drop to add"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void DropFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    Paint::box(&painter, rect().adjusted(1, 1, -1, -1), Tokens::RadiusWindow,
               withAlpha(Paint::color(Theme::Window), 0.9));
    const qreal margin = Tokens::Space16;
    const QRectF frame = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    painter.setPen(QPen(Paint::color(Theme::Accent), 2, Qt::DashLine));
    painter.setBrush(withAlpha(Paint::color(Theme::AccentSoft), 0.6));
    painter.drawRoundedRect(frame, Tokens::RadiusCard, Tokens::RadiusCard);
    // On an opaque plate, because the window shows through.
    painter.setFont(Theme::instance()->font(Theme::Title));
    const QString text = tr("Drop to add");
    QRectF plate = painter.boundingRect(frame, Qt::AlignCenter, text);
    plate.adjust(-Tokens::Space24, -Tokens::Space16, Tokens::Space24, Tokens::Space16);
    Paint::box(&painter, plate, Tokens::RadiusCard, Paint::color(Theme::Surface),
               Paint::color(Theme::Border));
    painter.setPen(Paint::color(Theme::Accent));
    painter.drawText(frame, Qt::AlignCenter, text);
}
