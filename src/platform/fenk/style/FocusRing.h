#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QWidget;

namespace Fenk {

/// Puts the ring around the control that has the focus: always when the keyboard brought it there, and around
/// fields to write in however it came. Lists and tabs draw their own inside. Owned by Style; one ring for the
/// process.
class FocusRing : public QObject {
    Q_OBJECT
public:
    explicit FocusRing(QObject* parent = nullptr);
    ~FocusRing() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void focusCame(QWidget* widget, Qt::FocusReason reason);
    void show(QWidget* widget);
    void hide();

    QPointer<QFocusFrame> m_frame;
    bool m_keyboard = false;  ///< the user's last move was by key
};

}  // namespace Fenk
