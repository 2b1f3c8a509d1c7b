#pragma once

#include "shell/configuration/tables/ComboCellDelegate.h"

/// Edits the Windows font or its replacement.
class FontReplacementItemDelegate : public ComboCellDelegate {
    Q_OBJECT
public:
    using ComboCellDelegate::ComboCellDelegate;

    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

Q_SIGNALS:
    /// The user has edited the cell, whether or not its text has changed.
    void edited(const QModelIndex& index) const;

protected:
    void prepare(QComboBox* combo, int column) const override;
};
