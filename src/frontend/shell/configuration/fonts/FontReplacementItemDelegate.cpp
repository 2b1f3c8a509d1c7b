#include "shell/configuration/fonts/FontReplacementItemDelegate.h"

#include <QComboBox>

#include "shell/configuration/fonts/FontNames.h"
#include "shell/configuration/tables/CompletingCombo.h"

void FontReplacementItemDelegate::prepare(QComboBox* combo, int column) const {
    combo->setAccessibleName(column == 0 ? "windowsfont_edit" : "linuxfont_edit");
    makeCompleting(combo, column == 0 ? FontNames::ofWindows() : FontNames::ofSystem());
}

void FontReplacementItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                               const QModelIndex& index) const {
    ComboCellDelegate::setModelData(editor, model, index);
    Q_EMIT edited(index);
}
