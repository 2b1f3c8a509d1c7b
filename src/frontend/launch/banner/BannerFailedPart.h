#pragma once

#include <QWidget>

class BannerCustomButton;
class QFrame;
class QPushButton;
class QSpacerItem;

namespace Fenk {
class Label;
}

/// The lower part of a banner whose launch has failed: what can be done, and the buttons for it. Those that
/// lead to a window which LaunchWindows does not have are hidden.
class BannerFailedPart : public QWidget {
    Q_OBJECT
public:
    explicit BannerFailedPart(QWidget* parent = nullptr);

    /// `canRepair`: the user may change the program at all. `canFix`: there is a repair for this failure.
    void offer(bool canRepair, bool canFix);
    void hideOffers();

    /// What Return presses: "Repair", otherwise "Debug", or none where neither is offered.
    QPushButton* suggested() const;

Q_SIGNALS:
    void feedback();
    void viewLogs();
    void debug();
    void repair();

private:
    QWidget* makeRepairRow();
    QLayout* makeQuietRow();

    Fenk::Label* m_advice;
    QSpacerItem* m_spacer;
    QPushButton* m_debug;
    QPushButton* m_repair = nullptr;
    QPushButton* m_repairDebug = nullptr;
    QFrame* m_repairLine = nullptr;
    BannerCustomButton* m_feedback = nullptr;
    QWidget* m_repairRow;
};
