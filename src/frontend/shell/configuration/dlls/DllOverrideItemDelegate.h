#pragma once

#include <QStringList>

#include "shell/configuration/tables/ComboCellDelegate.h"

/// Edits the name of a DLL, with the names of Wine's own DLLs to choose from, or its load method.
class DllOverrideItemDelegate : public ComboCellDelegate {
    Q_OBJECT
public:
    explicit DllOverrideItemDelegate(QObject* parent);

    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

    /// A line each; empty, with a warning, when the file cannot be opened.
    static QStringList builtinDlls(const QString& path = ":/data/builtin_dlls.txt");

protected:
    void prepare(QComboBox* combo, int column) const override;

private:
    QStringList m_dlls;
};
