#include "shell/configuration/tables/CompletingCombo.h"

#include <QComboBox>
#include <QCompleter>

namespace {

/// The combo box takes an entry for what is typed if the completer ignores case.
class LowerCaseCompleter : public QCompleter {
public:
    LowerCaseCompleter(QAbstractItemModel* model, QObject* parent) : QCompleter(model, parent) {
        setCaseSensitivity(Qt::CaseSensitive);
    }
    QStringList splitPath(const QString& path) const override { return {path.toLower()}; }
};

}  // namespace

void makeCompleting(QComboBox* combo, const QStringList& entries, int visibleItems, bool keepsCase) {
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setMaxVisibleItems(visibleItems);
    combo->addItems(entries);
    if (keepsCase)
        combo->setCompleter(new LowerCaseCompleter(combo->model(), combo));
    combo->completer()->setCompletionMode(QCompleter::PopupCompletion);
    combo->completer()->setFilterMode(Qt::MatchContains);
    combo->completer()->setMaxVisibleItems(visibleItems);
}
