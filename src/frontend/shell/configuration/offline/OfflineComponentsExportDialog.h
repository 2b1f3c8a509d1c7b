#pragma once

#include "shell/configuration/offline/OfflineComponentsDialog.h"

/// Exports components that are installed in a bottle into a file in a directory that the user chooses.
class OfflineComponentsExportDialog : public OfflineComponentsDialog {
    Q_OBJECT
public:
    explicit OfflineComponentsExportDialog(const QString& bottle, QWidget* parent = nullptr);

    /// Opens a dialog that deletes itself.
    static void openFor(const QString& bottle, QWidget* over);

protected:
    void offer() override;
    void start(const QStringList& names) override;
    void onDone() override;

private:
    void exportTo(const QString& directory, const QStringList& names);

    QString m_target;  ///< empty in a dialog that only watches
};
