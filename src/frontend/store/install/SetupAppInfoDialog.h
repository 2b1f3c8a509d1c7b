#pragma once

#include <QSet>

#include "store/install/CommonInfoBaseDialog.h"
#include "store/install/ManifestFacts.h"
#include "store/install/SetupAppInfo.h"
#include "store/install/SetupPackages.h"

class DependencyWarningWidget;
class FileHash;
class FileSelectWidget;
class SetupDownloadRow;
class WineDepsCard;

/// Shows what is known of an application of the store and takes its set-up program. While a package that the
/// set-up needs is missing, the dialog leads to it instead. The result is InstallButton when the user wants
/// the chosen file to be installed. GUI thread; asks the machine and the service without waiting.
class SetupAppInfoDialog : public CommonInfoBaseDialog {
    Q_OBJECT
public:
    enum Button { CancelButton = 0, InstallButton = 1 };

    /// What the dialog asks of the user, as a function of what is there.
    struct Step {
        bool isMissing = false;  ///< a package
        bool hasFile = false;

        bool canGoOn() const { return isMissing || hasFile; }
    };

    SetupAppInfoDialog(const SetupAppInfo& info, const ManifestFacts& manifest, QWidget* parent = nullptr);

    QString filePath() const;
    QString wineDependencies() const { return m_info.wineDependencies; }
    /// A package that the set-up needs.
    void addPackage(const QString& package);
    /// The desktop's store could not be opened for a package.
    void tellNoStore(const QString& package);

Q_SIGNALS:
    /// The user wants a missing package, which the desktop's store may have.
    void slotsOpenAppStorePage(const QString& wineDeps);

private:
    void addRows();
    void addParts();
    void connectParts();
    Step step() const;
    void showStep();
    void onButton(int index);
    void onFile(const QString& path);
    void onHash(const QByteArray& sha256);
    void askPackages(bool isClick);
    void askMachine(bool isClick);
    void checkPackages();
    void getPackage(const QString& package);
    void cancelFetches();
    void onDownload(const QString& kind, const QString& name, uint received, uint total);
    void onInstalled(const QString& name, const QString& errorText);
    void fitHeight();

    SetupAppInfo m_info;
    ManifestFacts m_manifest;
    SetupPackages m_packages;
    QStringList m_wanted;
    QSet<QString> m_fetched;  ///< what the service is fetching for this dialog
    QString m_fileBefore;     ///< the download
    bool m_isAsked = false;   ///< what is installed is known
    DependencyWarningWidget* m_warning;
    WineDepsCard* m_card;
    Fenk::Label* m_replaced;
    SetupDownloadRow* m_download = nullptr;
    FileSelectWidget* m_file;
    FileHash* m_hash;
};
