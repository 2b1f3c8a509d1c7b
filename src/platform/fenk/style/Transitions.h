#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

class QWidget;

namespace Fenk {

/// The progress of each control's hover transition. Queried while painting; repaints the control until the
/// transition ends. Owned by Style; handles the destruction of widgets.
class Transitions : public QObject {
    Q_OBJECT
public:
    explicit Transitions(QObject* parent = nullptr);

    /// 0 to 1; the first query for a widget returns the target without a transition.
    qreal hover(const QWidget* widget, bool over);

    /// Repaints the bar continuously while it is visible and has no range.
    void watchBusyBar(QWidget* bar);

private:
    struct Fade {
        qreal from = 0;
        bool target = false;
        QElapsedTimer since;
    };
    qreal valueOf(const Fade& fade) const;
    void tick();

    QHash<const QObject*, Fade> m_fades;
    QList<QWidget*> m_bars;
    QTimer m_timer;
};

}  // namespace Fenk
