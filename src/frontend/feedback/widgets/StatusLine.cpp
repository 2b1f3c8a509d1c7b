#include "feedback/widgets/StatusLine.h"

#include <QAccessible>

using namespace Fenk;

StatusLine::StatusLine(QWidget* parent) : Label(Label::Small, parent) {
    setElided(true);
}

void StatusLine::tell(const QString& text, Kind kind) {
    const bool isNew = text != this->text();
    setText(text);
    setTextRole(kind == Kind::Error ? Theme::Danger : Theme::Secondary);
    if (text.isEmpty() || !isNew || kind == Kind::Progress)
        return;
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}
