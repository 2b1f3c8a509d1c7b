#include "store/view/LoadingListView.h"

#include <QScrollBar>
#include <QVBoxLayout>

#include "fenk/controls/Spinner.h"

namespace {
constexpr int StripHeight = 64;
}

LoadingListView::LoadingListView(QWidget* parent)
    : QListView(parent), m_strip(new QWidget(this)), m_spinner(new Fenk::Spinner) {
    m_strip->setObjectName("scrollarea_loadingwidget");
    m_strip->setAccessibleName("scrollarea_loadingwidget");
    m_strip->setFixedHeight(StripHeight);
    m_strip->hide();
    auto* layout = new QVBoxLayout(m_strip);
    layout->addWidget(m_spinner, 0, Qt::AlignCenter);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        // Only a move downwards: a range that shrinks moves the bar to its end, too.
        const bool isDown = value > m_lastValue;
        m_lastValue = value;
        if (isDown && value == verticalScrollBar()->maximum() && !m_isLoading)
            Q_EMIT reachedBottom();
    });
}

void LoadingListView::setBottomLoading(bool loading) {
    if (loading == m_isLoading)
        return;
    m_isLoading = loading;
    const bool wasAtEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
    setViewportMargins(0, 0, 0, loading ? StripHeight : 0);
    placeStrip();
    m_strip->setVisible(loading);
    if (loading)
        m_spinner->startDelayed();
    else
        m_spinner->stop();
    // The last row stays in sight.
    if (loading && wasAtEnd)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void LoadingListView::placeStrip() {
    m_strip->setGeometry(0, height() - StripHeight, width(), StripHeight);
}

void LoadingListView::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    placeStrip();
}
