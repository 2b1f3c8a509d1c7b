#pragma once

#include <QWidget>

class BannerCustomButton;
class QFrame;
class QPushButton;
class QSpacerItem;

namespace Fenk {
class Label;
}

/// The lower part of a banner whose launch has failed: advice and the buttons for it. Buttons for a window
/// that LaunchWindows does not offer are hidden.
class BannerFailedPart : public QWidget {
    Q_OBJECT
public:
    explicit BannerFailedPart(QWidget* parent = nullptr);

    /// `canRepair`: the user may change the program. `canFix`: there is a repair for this failure.
    void offer(bool canRepair, bool canFix);
    void hideOffers();
    /// See WineExeLaunchBanner.
    void setRepairDetails(const QString& text);
    void offerRetry(bool canChooseFile);

    /// The button that Return presses: "Repair", "Try Again", otherwise "Debug"; null if none is offered.
    QPushButton* suggested() const;

Q_SIGNALS:
    void feedback();
    void viewLogs();
    void debug();
    void repair();
    void retry();
    void chooseFile();

private:
    QWidget* makeRepairRow();
    QWidget* makeRetryRow();
    QLayout* makeQuietRow();

    Fenk::Label* m_advice;
    QSpacerItem* m_spacer;
    QPushButton* m_debug;
    QPushButton* m_repair = nullptr;
    QPushButton* m_repairDebug = nullptr;
    QFrame* m_repairLine = nullptr;
    BannerCustomButton* m_feedback = nullptr;
    QWidget* m_repairRow;
    QPushButton* m_choose = nullptr;
    QPushButton* m_retry = nullptr;
    QWidget* m_retryRow;
};
