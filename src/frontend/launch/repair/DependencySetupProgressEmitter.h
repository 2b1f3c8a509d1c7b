#pragma once

#include <QObject>
#include <QTimer>
#include <QVariantAnimation>

/// The percentage of one component's installation. The service reports steps far apart; between them the
/// value creeps on by a point each 8 s, up to where the next step begins. Made for one bottle and component,
/// whose step reports it hears by itself.
class DependencySetupProgressEmitter : public QObject {
    Q_OBJECT
public:
    DependencySetupProgressEmitter(const QString& bottle, const QString& dependency,
                                   QObject* parent = nullptr);

    int percent() const { return m_percent; }            ///< what the shown value is heading for
    int percentLimit() const { return m_percentLimit; }  ///< how far it may creep without news
    bool isCreeping() const { return m_creepTimer.isActive(); }

    void onStep(const QString& bottle, const QString& dependency, int step, int steps);
    /// One tick of the timer.
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
