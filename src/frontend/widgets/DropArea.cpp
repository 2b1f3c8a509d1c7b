#include "widgets/DropArea.h"

#include <QDebug>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

DropArea::DropArea(QWidget* parent) : QWidget(parent) {
    setAcceptDrops(true);
}

void DropArea::dragEnterEvent(QDragEnterEvent* event) {
    if (!event->mimeData()->hasUrls())
        return;
    event->acceptProposedAction();
    m_isDragged = true;
    update();
}

void DropArea::dragLeaveEvent(QDragLeaveEvent*) {
    m_isDragged = false;
    update();
}

void DropArea::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    QStringList logged;  // queries and the like may be as good as passwords
    for (const QUrl& url : urls)
        logged << url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
    qInfo() << "urls: " << logged;
    m_isDragged = false;
    update();
    event->acceptProposedAction();
    Q_EMIT dropped(urls);
}

void DropArea::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme* theme = Theme::instance();
    QPen pen(theme->color(m_isDragged ? Theme::Accent : Theme::Border), Tokens::IconStroke);
    pen.setStyle(Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(theme->color(m_isDragged ? Theme::AccentSoft : Theme::Surface));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), Tokens::RadiusCard, Tokens::RadiusCard);
}
