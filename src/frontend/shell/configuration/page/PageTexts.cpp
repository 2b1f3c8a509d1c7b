#include "shell/configuration/page/PageTexts.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>

namespace {

QString textsOf(const QWidget* widget) {
    QStringList texts{widget->accessibleName(), widget->toolTip()};
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        texts << label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        texts << button->text();
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
        texts << edit->placeholderText();
    return texts.join('\n');
}

void reveal(QWidget* widget) {
    for (QWidget* outer = widget->parentWidget(); outer; outer = outer->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(outer))
            area->ensureWidgetVisible(widget);
    }
}

}  // namespace

bool PageTexts::matches(QWidget* page, const QString& text) {
    QWidget* found = nullptr;
    for (QWidget* widget : page->findChildren<QWidget*>()) {
        auto* edit = qobject_cast<QLineEdit*>(widget);
        if (edit && edit->objectName().endsWith(QLatin1String("_search_edit")))
            edit->setText(text);
        else if (!found && textsOf(widget).contains(text, Qt::CaseInsensitive))
            found = widget;
    }
    if (found && !text.isEmpty())
        reveal(found);
    return found;
}
