#pragma once

#include "fenk/window/Dialog.h"
#include "shell/configuration/dlls/ScanChanges.h"

class QCheckBox;
class QTreeWidget;

/// Shows what a scan would change, each with a check box, and one for all of them. Deletes itself when it is
/// closed.
class ScanDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    /// `method` is the load method that the changes set.
    ScanDialog(const QString& title, const QVector<ScanChange>& changes, int method, QWidget* parent);

Q_SIGNALS:
    /// The names that are checked.
    void applied(const QStringList& names);

private:
    QStringList checked() const;
    void checkAll(bool checked);
    void refresh();

    QTreeWidget* m_list;
    QCheckBox* m_all;
    int m_apply = 0;
};
