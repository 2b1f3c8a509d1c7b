#pragma once

#include <QPointer>
#include <memory>

#include "fenk/window/AbstractDialog.h"
#include "packaging/driver/PackagingRun.h"

class QStackedWidget;
class ShowPackageDoneWidget;
class ShowPackageFailedWidget;
class ShowPackagingLogWidget;
class ShowPackagingProgressWidget;

namespace Fenk {
class Dialog;
}

/// Packs a bottle and shows how it goes: progress with a log to unfold, then the package or why there is
/// none. Closing it while the script runs asks first. Owned by whoever opens it; ends the script when it is
/// destroyed.
class DoPackageDialog : public Fenk::AbstractDialog {
    Q_OBJECT

public:
    explicit DoPackageDialog(QWidget* parent = nullptr);

    void start(const QString& bottleName, const QString& packageName, const QString& packageVersion,
               const QString& logDir);

    void reject() override;

Q_SIGNALS:
    void updateProgress(double value);

public Q_SLOTS:
    void slotsPackageOutput(const QString& line, bool isError = false);
    void slotsShowLogs();
    void slotsHideLogs();

private:
    void onFinished(PackagingRun::End end);
    void changeSavedPath();
    void setSavedPath(const QString& directory);
    void openPackage();
    void askWhetherToClose();
    void adjustHeight();

    QString m_packageName;
    QString m_packageVersion;
    QString m_saveDirectory;
    PackagingRun m_run;
    std::unique_ptr<QObject> m_preparation;  ///< until the script is started
    QPointer<Fenk::Dialog> m_question;
    QStackedWidget* m_pages;
    ShowPackagingProgressWidget* m_progress;
    ShowPackageDoneWidget* m_done;
    ShowPackageFailedWidget* m_failed;
    ShowPackagingLogWidget* m_log;
};
