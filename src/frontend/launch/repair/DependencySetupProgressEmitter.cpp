#include "launch/repair/DependencySetupProgressEmitter.h"

#include "backend/BottlesConfig.h"

namespace {

constexpr int CreepMs = 8000;
constexpr int AnimationMs = 1500;
constexpr int Complete = 100;

}  // namespace

DependencySetupProgressEmitter::DependencySetupProgressEmitter(const QString& bottle,
                                                               const QString& dependency, QObject* parent)
    : QObject(parent), m_creepTimer(this), m_animation(this), m_bottle(bottle), m_dependency(dependency) {
    m_animation.setStartValue(0);
    connect(BottlesConfig::instance(), &BottlesConfig::dependencySetupStepNotify, this,
            &DependencySetupProgressEmitter::onStep);
    connect(&m_creepTimer, &QTimer::timeout, this, &DependencySetupProgressEmitter::creep);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { Q_EMIT valueChanged(value.toInt()); });
    m_creepTimer.start(CreepMs);
}

void DependencySetupProgressEmitter::onStep(const QString& bottle, const QString& dependency, int step,
                                            int steps) {
    if (bottle != m_bottle || dependency != m_dependency)
        return;
    const float total = steps == 0 ? 1 : float(steps);
    m_percent = int(qBound(0.0f, float(step) / total * Complete, float(Complete)));
    m_percentLimit = int(qBound(0.0f, (float(step) + 1) / total * Complete, float(Complete)));
    if (m_percent >= Complete) {
        m_percentLimit = Complete;
        m_creepTimer.stop();
        m_animation.stop();
        return;
    }
    m_creepTimer.stop();
    animateTo(m_percent);
    m_creepTimer.start(CreepMs);
}

void DependencySetupProgressEmitter::creep() {
    if (m_percent >= m_percentLimit) {
        m_creepTimer.stop();
        return;
    }
    animateTo(++m_percent);
}

void DependencySetupProgressEmitter::animateTo(int percent) {
    m_animation.stop();
    const QVariant shown = m_animation.currentValue();
    m_animation.setStartValue(shown.isValid() ? shown : QVariant(0));
    m_animation.setEndValue(percent);
    m_animation.setDuration(AnimationMs);
    m_animation.start();
}
