#include "programs/TileName.h"

#include <QPainter>
#include <QTextLayout>

#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"

using namespace Fenk;

TileName::TileName(QWidget* parent) : QWidget(parent) {
    setAccessibleName("appitem_name");
    setFont(Theme::instance()->font(Theme::BodyStrong));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void TileName::setText(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    setAccessibleDescription(text);
    update();
}

void TileName::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(Paint::color(isEnabled() ? Theme::Text : Theme::Disabled));
    QTextLayout layout(m_text, font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    if (first.isValid())
        first.setLineWidth(width());
    layout.endLayout();
    const QFontMetrics metrics = fontMetrics();
    const int cut = first.isValid() ? first.textLength() : 0;
    const QRect line(0, 0, width(), metrics.height());
    painter.drawText(line, Qt::AlignCenter, m_text.left(cut).trimmed());
    if (cut < m_text.size())
        painter.drawText(line.translated(0, metrics.height()), Qt::AlignCenter,
                         metrics.elidedText(m_text.mid(cut).trimmed(), Qt::ElideRight, width()));
}
