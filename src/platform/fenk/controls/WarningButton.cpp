#include "fenk/controls/WarningButton.h"

#include "fenk/style/WidgetLook.h"

namespace Fenk {

WarningButton::WarningButton(QWidget* parent) : WarningButton(QString(), parent) {}

WarningButton::WarningButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setFilled(false);
}

void WarningButton::setFilled(bool filled) {
    setButtonKind(this, filled ? ButtonKind::Destructive : ButtonKind::Warning);
}

}  // namespace Fenk
