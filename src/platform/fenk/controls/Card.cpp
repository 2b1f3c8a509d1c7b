#include "fenk/controls/Card.h"

#include <QPainter>
#include <QVBoxLayout>

#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

Card::Card(QWidget* parent) : QFrame(parent), m_rows(new QVBoxLayout(this)) {
    setFrameShape(QFrame::NoFrame);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    m_rows->setContentsMargins(1, 1, 1, 1);
    m_rows->setSpacing(0);
    connect(Theme::instance(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Card::addRow(QWidget* row) {
    if (m_rows->count() > 0) {
        auto* line = new QFrame;
        line->setFrameShape(QFrame::HLine);
        line->setFixedHeight(1);
        auto* inset = new QVBoxLayout;
        inset->setContentsMargins(Tokens::Space16, 0, Tokens::Space16, 0);
        inset->addWidget(line);
        m_rows->addLayout(inset);
    }
    m_rows->addWidget(row);
}

void Card::setHoverable(bool hoverable) {
    setAttribute(Qt::WA_Hover, hoverable);
    update();
}

void Card::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool over = testAttribute(Qt::WA_Hover) && isEnabled() && underMouse();
    Paint::box(&painter, rect(), Tokens::RadiusCard, Paint::color(over ? Theme::AccentSoft : Theme::Surface),
               Paint::color(Theme::Border));
}

}  // namespace Fenk
