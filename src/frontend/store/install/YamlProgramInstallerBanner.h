#pragma once

#include "launch/banner/WineExeLaunchBanner.h"

class QProgressBar;

/// The banner of an installation from the store. While the bottle is set up it has a bar and a way to cancel;
/// while the set-up program runs it is as every launch's.
class YamlProgramInstallerBanner : public WineExeLaunchBanner {
    Q_OBJECT
public:
    explicit YamlProgramInstallerBanner(QWidget* parent = nullptr);

    void showSetupStage();
    void showRunStage();
    /// Of the set-up, in percent.
    void setProgress(int percent);

protected:
    BannerCloseConfirmDialog::Form questionForm() const override;

private:
    QWidget* m_setupPart;
    QProgressBar* m_bar;
    bool m_isSetup = true;
};
