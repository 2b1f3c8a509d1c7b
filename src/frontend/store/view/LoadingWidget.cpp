#include "store/view/LoadingWidget.h"

#include <QPainter>
#include <QVBoxLayout>

#include "fenk/controls/Spinner.h"
#include "store/images/LoadingAnimation.h"
#include "store/view/SkeletonCard.h"

LoadingWidget::LoadingWidget(QWidget* parent) : QWidget(parent), m_spinner(new Fenk::Spinner) {
    setAccessibleName(tr("Loading"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_spinner, 0, Qt::AlignCenter);
}

LoadingWidget::~LoadingWidget() {
    LoadingAnimation::instance()->remove(this);
}

void LoadingWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_spinner->startDelayed();
    LoadingAnimation::instance()->add(this);
}

void LoadingWidget::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_spinner->stop();
    LoadingAnimation::instance()->remove(this);
}

void LoadingWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    using SkeletonCard::Card;
    using SkeletonCard::Pitch;
    for (int y = 0; y < height(); y += Pitch.height()) {
        for (int x = 0; x + SkeletonCard::CellOffset.x() + Card.width() <= width(); x += Pitch.width())
            SkeletonCard::paint(&painter, QPoint(x, y));
    }
}
