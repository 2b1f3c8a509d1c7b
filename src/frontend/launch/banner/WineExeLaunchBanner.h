#pragma once

#include <QPointer>

#include "fenk/window/MainWindow.h"
#include "launch/banner/BannerCloseConfirmDialog.h"

class BannerDescription;
class BannerFailedPart;
class BannerMotion;
class BannerPicture;
class QSpacerItem;
class SteadyText;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// The window of a launch that has no window of its own program yet: shows which program it is and what
/// happens, and after a failure what can be done. Only shows and asks; its owner decides what a click does.
/// Closing it while the launch runs asks first; otherwise it emits finished() and closes. GUI thread.
class WineExeLaunchBanner : public Fenk::MainWindow {
    Q_OBJECT
public:
    enum CloseState { Running = 0, Failed = 1, Closable = 2 };

    explicit WineExeLaunchBanner(QWidget* parent = nullptr);

    void setAppName(const QString& name);
    /// One line each, plain text. They change at most every 400 ms, so that they can be read (SteadyText),
    /// and the percentage of a step never falls.
    void setStatus(const QString& status);
    void setDescription(const QString& description);
    void setIcon(const QIcon& icon);

    /// `canFix`: a repair is offered.
    void showFailed(bool canFix);
    void showRunning();

    /// After showFailed(true): what the repair will install or change, plain text, shown as a tool tip.
    void setRepairDetails(const QString& text);
    /// After showFailed(false), if a repair has failed: offers to try it again. `canChooseFile` offers to use
    /// a file of the user as well.
    void offerRetry(bool canChooseFile);

    /// False for programs that the user cannot change: a failure then offers neither repair nor debugging.
    void setCanRepair(bool canRepair) { m_canRepair = canRepair; }

    /// Closing does not ask from now on.
    void allowClose() { m_closeState = Closable; }
    int closeState() const { return m_closeState; }

Q_SIGNALS:
    void stopRunning();
    void feedBackButtonClicked();
    void showLogsButtonClicked();
    void debugButtonClicked();
    void repairButtonClicked();
    void finished();
    void retryButtonClicked();
    void chooseFileButtonClicked();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    /// The form of the question that closing asks while something runs.
    virtual BannerCloseConfirmDialog::Form questionForm() const { return BannerCloseConfirmDialog::Starting; }
    /// Puts a part below the description, which a failure hides. Otherwise its owner shows and hides it, and
    /// calls fitRunningPart() then.
    void addRunningPart(QWidget* part);
    void fitRunningPart();

private:
    void arrange();
    QWidget* makeStatusRow();
    void connectParts();
    void showStatus(const QString& status);
    int failedHeight() const;
    void keepRoomBelow(int windowHeight);
    void closeQuestion();

    BannerPicture* m_icon;
    Fenk::Label* m_name;
    Fenk::Label* m_status;
    BannerDescription* m_description;
    SteadyText* m_statusText;
    SteadyText* m_descriptionText;
    Fenk::Spinner* m_ring;
    BannerPicture* m_failedMark;
    BannerFailedPart* m_failed;
    QSpacerItem* m_above;
    QWidget* m_changing;  ///< all that differs between the two looks
    BannerMotion* m_motion;
    QPointer<QWidget> m_runningPart;
    QPointer<BannerCloseConfirmDialog> m_confirm;
    CloseState m_closeState = Running;
    QString m_runningStatus;  ///< what the running look comes back with
    bool m_canRepair = true;
    bool m_placed = false;
};
