#include "shell/properties/PathLink.h"

#include <QPainter>

#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {
constexpr int LongestPath = 4096;
}

PathLink::PathLink(QWidget* parent) : QAbstractButton(parent) {
    setFont(Theme::instance()->font(Theme::Body));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleDescription(tr("Opens the folder of the application"));
}

void PathLink::setPath(const QString& path) {
    m_path = path.left(LongestPath).simplified();
    setAccessibleName(m_path);
    setEnabled(!m_path.isEmpty());
    resizeEvent(nullptr);
    updateGeometry();
    update();
}

QString PathLink::shown() const {
    return fontMetrics().elidedText(m_path, Qt::ElideMiddle, width());
}

QRect PathLink::textRect() const {
    const int wide = qMin(width(), fontMetrics().horizontalAdvance(shown()));
    return QStyle::visualRect(layoutDirection(), rect(), QRect(width() - wide, 0, wide, height()));
}

QSize PathLink::sizeHint() const {
    return {fontMetrics().horizontalAdvance(m_path), Tokens::CompactHeight};
}

QSize PathLink::minimumSizeHint() const {
    return {Tokens::IconTile, Tokens::CompactHeight};
}

void PathLink::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont font = this->font();
    font.setUnderline(underMouse() || hasFocus());
    painter.setFont(font);
    const QColor accent = Paint::color(isEnabled() ? Theme::Accent : Theme::Disabled);
    painter.setPen(isDown() ? Paint::step(accent) : accent);
    painter.drawText(textRect(), Qt::AlignCenter | Qt::TextSingleLine, shown());
}

void PathLink::resizeEvent(QResizeEvent*) {
    setToolTip(shown() == m_path ? QString() : plainToolTip(m_path));
}

bool PathLink::hitButton(const QPoint& position) const {
    return textRect().contains(position);
}
