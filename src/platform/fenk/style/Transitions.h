#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

class QWidget;

namespace Fenk {

/// How far each control is on its way into or out of its hover look. Asked by painters while they paint;
/// repaints the control until it has arrived. Owned by Style; forgets widgets that die.
class Transitions : public QObject {
    Q_OBJECT
public:
    explicit Transitions(QObject* parent = nullptr);

    /// 0 to 1; the first question about a widget answers with the target at once.
    qreal hover(const QWidget* widget, bool over);

    /// A busy bar repaints steadily from now on while it is visible and has no range.
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
