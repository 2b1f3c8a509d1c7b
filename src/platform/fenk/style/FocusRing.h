#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

namespace Fenk {

/// Draws the ring around the focused control: always after keyboard navigation, and for text fields in any
/// case. Lists and tabs draw their own ring inside. Owned by Style; one per process.
class FocusRing : public QObject {
    Q_OBJECT
public:
    explicit FocusRing(QObject* parent = nullptr);
    ~FocusRing() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void onFocusIn(QWidget* widget, Qt::FocusReason reason);
    void show(QWidget* widget);
    void hide();

    QPointer<QFocusFrame> m_frame;
    bool m_keyboard = false;  ///< the last navigation was by keyboard
};

}  // namespace Fenk
