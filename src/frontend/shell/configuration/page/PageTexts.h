#pragma once

#include <QString>

class QWidget;

/// What a page without a search of its own says.
namespace PageTexts {

/// Whether a label, a button or the name of a field contains the text in any case; scrolls to the first that
/// does. A field of the page that searches ("..._search_edit") gets the text, too.
bool matches(QWidget* page, const QString& text);

}  // namespace PageTexts
