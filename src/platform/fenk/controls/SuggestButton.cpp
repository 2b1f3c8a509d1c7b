#include "fenk/controls/SuggestButton.h"

#include "fenk/style/WidgetLook.h"

namespace Fenk {

SuggestButton::SuggestButton(QWidget* parent) : SuggestButton(QString(), parent) {}

SuggestButton::SuggestButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
    setButtonKind(this, ButtonKind::Suggested);
}

}  // namespace Fenk
