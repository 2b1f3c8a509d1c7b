#pragma once

#include <QPointer>
#include <QVariantAnimation>

#include "fenk/window/MainWindow.h"

class BannerCloseConfirmDialog;
class BannerFailedPart;
class BannerPicture;
class QGraphicsOpacityEffect;
class QLabel;
class QSpacerItem;
class SteadyText;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// Stands for a launch while no window of the program itself exists: which program, what is happening, that
/// it is alive; after a failure what can be done. Only shows and asks: whoever owns it listens and decides.
/// Closing it while the launch is running asks first; otherwise it says finished() and closes.
class WineExeLaunchBanner : public Fenk::MainWindow {
    Q_OBJECT
public:
    enum CloseState { Running = 0, Failed = 1, Closable = 2 };

    explicit WineExeLaunchBanner(QWidget* parent = nullptr);

    void setAppName(const QString& name);
    /// One line each, as plain text. They follow the calls at a pace that can be read, and a percentage in
    /// them never falls within one step.
    void setStatus(const QString& status);
    void setDescription(const QString& description);
    void setIcon(const QIcon& icon);

    /// `canFix`: a repair is on offer.
    void showFailed(bool canFix);
    void showRunning();

    /// After showFailed(true): what the repair is going to bring, as plain text.
    void setRepairDetails(const QString& text);
    /// After showFailed(false): a repair has failed and can be tried again, perhaps with a file that the user
    /// chooses.
    void offerRetry(bool canChooseFile);

    /// False for programs that the user cannot change: a failure then offers neither repair nor debugging.
    void setCanRepair(bool canRepair) { m_canRepair = canRepair; }

    /// From now on closing asks nothing.
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

private:
    void arrange();
    QWidget* makeStatusRow();
    void connectParts();
    void showStatus(const QString& status);
    void showDescription(const QString& text);
    void giveDescriptionRoom(bool isReason);
    void limitDescription(int lines);
    void keepRoomBelow(int windowHeight);
    void moveHeight(int height);
    void leaveFailedPicture();
    void fade(qreal from, qreal to);
    void showFade(qreal failed);
    void endFade();
    void closeQuestion();

    BannerPicture* m_icon;
    Fenk::Label* m_name;
    Fenk::Label* m_status;
    Fenk::Label* m_description;
    SteadyText* m_statusText;
    SteadyText* m_descriptionText;
    QString m_shownDescription;
    bool m_isReason = false;  ///< the description is the one of a failure
    Fenk::Spinner* m_ring;
    BannerPicture* m_failedMark;
    BannerFailedPart* m_failed;
    QSpacerItem* m_above;
    QWidget* m_changing;  ///< all that differs between the two looks
    QGraphicsOpacityEffect* m_opacity;
    QPointer<QLabel> m_leftover;  ///< picture of the failed part, which fades
    QVariantAnimation m_fade;
    QVariantAnimation m_movement;
    QPointer<BannerCloseConfirmDialog> m_confirm;
    CloseState m_closeState = Running;
    QString m_runningStatus;  ///< what the running look comes back with
    bool m_canRepair = true;
    bool m_placed = false;
};
