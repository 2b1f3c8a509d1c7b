#pragma once

#include <QStringList>

#include "shell/configuration/offline/OfflineComponentsDialog.h"

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
    void check();
    void onChecked(const BusResult& result);
    void showAnswer(const QJsonObject& answer);
    void showTip(const QString& detail);
    void askAboutPrograms(const QStringList& programs, const QStringList& names);

    QStringList m_files;
    QStringList m_valid;
    bool m_isPartial = false;  ///< some components in the files are missing others
};
