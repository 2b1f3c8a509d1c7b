#pragma once

#include <QStringList>

#include "shell/configuration/offline/OfflineComponentsDialog.h"

class QPushButton;

/// Installs components into a bottle from exported files that the user chooses.
class OfflineComponentsImportDialog : public OfflineComponentsDialog {
    Q_OBJECT
public:
    explicit OfflineComponentsImportDialog(const QString& bottle, QWidget* parent = nullptr);

    /// Opens a dialog that deletes itself.
    static void openFor(const QString& bottle, QWidget* over);

protected:
    void offer() override;
    void start(const QStringList& names) override;

private:
    void chooseFiles();
    void onFilesChosen(const QStringList& files);
    void onChecked(const BusResult& result);
    void showTip(const QString& detail);
    void onStarted(const QStringList& names, const BusResult& result);
    void askAboutPrograms(const QStringList& programs, const QStringList& names);

    QStringList m_files;
    QStringList m_valid;
    QPushButton* m_more;  ///< "Select Manually" once more
};
