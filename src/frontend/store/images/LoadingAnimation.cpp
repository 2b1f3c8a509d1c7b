#include "store/images/LoadingAnimation.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

#include "fenk/style/Theme.h"

namespace {
constexpr int TickMs = 16;
}

// Q_INIT_RESOURCE declares a function of the global scope.
static void loadResources() {
    Q_INIT_RESOURCE(resources_animate);
}

LoadingAnimation* LoadingAnimation::instance() {
    // Pixmaps must be deleted before the application object.
    static QPointer<LoadingAnimation> animation;
    if (!animation) {
        animation = new LoadingAnimation;
        animation->setParent(QCoreApplication::instance());
    }
    return animation;
}

LoadingAnimation::LoadingAnimation() : m_frames(Frames) {
    loadResources();
    m_timer.setInterval(TickMs);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_frame = (m_frame + 1) % Frames;
        for (QWidget* widget : qAsConst(m_widgets))
            widget->update();
    });
    connect(Fenk::Theme::instance(), &Fenk::Theme::changed, this, &LoadingAnimation::updateTimer);
}

void LoadingAnimation::add(QWidget* widget) {
    m_widgets.insert(widget);
    updateTimer();
}

void LoadingAnimation::remove(QWidget* widget) {
    m_widgets.remove(widget);
    updateTimer();
}

void LoadingAnimation::updateTimer() {
    const bool runs = !m_widgets.isEmpty() && Fenk::Theme::instance()->animationsEnabled();
    if (!runs)
        m_timer.stop();
    else if (!m_timer.isActive())
        m_timer.start();
}

const QPixmap& LoadingAnimation::frame() {
    QPixmap& frame = m_frames[m_frame];
    if (frame.isNull())
        frame.load(QString(":/animate/loading_%1.png").arg(m_frame, 3, 10, QChar('0')));
    return frame;
}
