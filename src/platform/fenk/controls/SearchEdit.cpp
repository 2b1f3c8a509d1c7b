#include "fenk/controls/SearchEdit.h"

#include <QKeyEvent>

#include "fenk/style/Theme.h"

namespace Fenk {

SearchEdit::SearchEdit(QWidget* parent) : QLineEdit(parent) {
    addAction(Theme::icon("fenk-search"), QLineEdit::LeadingPosition);
    setClearButtonEnabled(true);
    setPlaceholderText(tr("Search"));
    setAccessibleName(tr("Search"));
}

void SearchEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
        clear();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

}  // namespace Fenk
