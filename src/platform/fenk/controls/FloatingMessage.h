#pragma once

#include <QTimer>
#include <QWidget>

class QIcon;

namespace Fenk {

/// A sentence that floats over the bottom of a window for some seconds and asks for nothing. A newer one
/// takes the place of the one that is there. Owned by the window it floats on; deletes itself when its time
/// is over.
class FloatingMessage : public QWidget {
    Q_OBJECT
public:
    /// `over` is any widget of the window. The sentence is plain text.
    static FloatingMessage* show(QWidget* over, const QIcon& icon, const QString& sentence, int ms = 4000);

    QString sentence() const { return accessibleName(); }

protected:
    FloatingMessage(QWidget* window, const QIcon& icon, const QString& sentence);
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QTimer m_timer;
};

}  // namespace Fenk
