#include "feedback/rating/scoreContainer.h"

#include <QHBoxLayout>
#include <QKeyEvent>

#include "feedback/rating/starContainer.h"

scoreContainer::scoreContainer(QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addStretch();
    for (int index = 1; index <= Count; ++index) {
        auto* star = new starContainer(index);
        layout->addWidget(star);
        m_stars += star;
        connect(star, &starContainer::clicked, this, [this, index] {
            m_score = index;
            light(m_score);
            Q_EMIT starClick(index);
        });
        connect(star, &starContainer::hovered, this,
                [this](int hovered) { light(hovered ? hovered : m_score); });
    }
    layout->addStretch();
    setFocusProxy(m_stars.first());
}

void scoreContainer::choose(int score) {
    if (score < 1 || score > Count)
        return;
    starContainer* star = m_stars[score - 1];
    setFocusProxy(star);
    star->click();
}

void scoreContainer::light(int score) {
    for (starContainer* star : qAsConst(m_stars))
        star->handleStar(score);
}

void scoreContainer::keyPressEvent(QKeyEvent* event) {
    const int score = event->key() - Qt::Key_0;
    if (score < 1 || score > Count) {
        QWidget::keyPressEvent(event);
        return;
    }
    choose(score);
    m_stars[score - 1]->setFocus(Qt::OtherFocusReason);
}
