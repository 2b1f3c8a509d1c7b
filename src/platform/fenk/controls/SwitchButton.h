#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace Fenk {

/// A switch for a setting that takes effect at once. Space and Return toggle it, Left and Right switch it off
/// and on; toggled() reports changes. Has no text of its own, so set an accessible name.
class SwitchButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit SwitchButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    void slide(bool on);

    QVariantAnimation m_slide;
    qreal m_position = 0;  ///< 0: off, 1: on
};

}  // namespace Fenk
