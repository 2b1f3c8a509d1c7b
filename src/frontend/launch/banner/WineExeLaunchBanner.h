#pragma once

#include <QPointer>

#include "fenk/MainWindow.h"

class BannerCloseConfirmDialog;
class BannerCustomButton;
class QLabel;
class QPushButton;

/// Stands for a launch while no window of the program itself exists: which program, what is happening, that
/// it is alive; after a failure what can be done. Only shows and asks: whoever owns it listens and decides.
/// Closing it while the launch is running asks first; otherwise it says finished() and closes.
class WineExeLaunchBanner : public Fenk::MainWindow {
    Q_OBJECT
public:
    enum CloseState { Running = 0, Failed = 1, Closable = 2 };

    explicit WineExeLaunchBanner(QWidget* parent = nullptr);

    void setAppName(const QString& name);
    void setStatus(const QString& status);
    void setDescription(const QString& description);
    void setIcon(const QIcon& icon);

    /// `canFix`: a repair is on offer.
    void showFailed(bool canFix);
    void showRunning();

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

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeFailedPart();

    QLabel* m_icon;
    QLabel* m_name;
    QLabel* m_status;
    QLabel* m_description;
    QWidget* m_running;
    QWidget* m_failed;
    QLabel* m_advice = nullptr;
    QPushButton* m_debug = nullptr;
    QWidget* m_repairRow = nullptr;
    QPointer<BannerCloseConfirmDialog> m_confirm;
    CloseState m_closeState = Running;
    bool m_canRepair = true;
};
