#pragma once

#include <QTimer>
#include <QWidget>

class QIcon;

namespace Fenk {

/// A message at the bottom of a window, in a dialog above the row of buttons, that disappears after some
/// seconds and needs no answer. A new message replaces the current one. Owned by the window; deletes itself
/// when its time is over.
class FloatingMessage : public QWidget {
    Q_OBJECT
public:
    /// `over` is any widget of the window. The message is plain text.
    static FloatingMessage* show(QWidget* over, const QIcon& icon, const QString& text, int ms = 4000);

    QString text() const { return accessibleName(); }

protected:
    FloatingMessage(QWidget* window, const QIcon& icon, const QString& text);
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QTimer m_timer;
};

}  // namespace Fenk
