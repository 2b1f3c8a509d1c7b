#include "fenk/controls/IconButton.h"

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

IconButton::IconButton(const QString& iconName, const QString& word, QWidget* parent, Size size)
    : QToolButton(parent) {
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    const int side = size == Compact ? Tokens::CompactHeight : Tokens::ControlHeight;
    setFixedSize(side, side);
    const int icon = size == Compact ? Tokens::IconSmall : Tokens::IconMedium;
    setIconSize(QSize(icon, icon));
    setIconName(iconName);
    setWord(word);
}

void IconButton::setIconName(const QString& iconName) {
    setIcon(Theme::icon(iconName));
}

void IconButton::setWord(const QString& word) {
    setToolTip(word);
    setAccessibleName(word);
}

}  // namespace Fenk
