#pragma once

#include <QObject>
#include <QTimer>
#include <QVariantAnimation>

/// The percentage of one component's installation. The service reports few steps; in between the value
/// advances by one point every 8 s, up to the start of the next step. Listens to the service's reports about
/// one component in one bottle.
class DependencySetupProgressEmitter : public QObject {
    Q_OBJECT
public:
    DependencySetupProgressEmitter(const QString& bottle, const QString& dependency,
                                   QObject* parent = nullptr);

    int percent() const { return m_percent; }            ///< the target of the running animation
    int percentLimit() const { return m_percentLimit; }  ///< upper limit until the next step
    bool isCreeping() const { return m_creepTimer.isActive(); }

    void onStep(const QString& bottle, const QString& dependency, int step, int steps);
    /// Advances by one point; called by the timer.
    void creep();

Q_SIGNALS:
    void valueChanged(int percent);

private:
    void animateTo(int percent);

    int m_percent = 0;
    int m_percentLimit = 100;
    QTimer m_creepTimer;
    QVariantAnimation m_animation;
    QString m_bottle;
    QString m_dependency;
};
