#include "shell/configuration/tables/CompletingCombo.h"

#include <QComboBox>
#include <QCompleter>

void makeCompleting(QComboBox* combo, const QStringList& entries, int visibleItems) {
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setMaxVisibleItems(visibleItems);
    combo->addItems(entries);
    combo->completer()->setCompletionMode(QCompleter::PopupCompletion);
    combo->completer()->setCaseSensitivity(Qt::CaseInsensitive);
    combo->completer()->setFilterMode(Qt::MatchContains);
    combo->completer()->setMaxVisibleItems(visibleItems);
}
