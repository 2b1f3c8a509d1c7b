#pragma once

#include "fenk/window/Dialog.h"

class QProgressBar;

/// The window while the bottle of a packaged program is made or updated, which another process does. Only
/// shows. Every way to close it answers: Cancel, Escape and the close button finish the dialog.
class BottleProgressDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    enum class Work { Make, Update };

    /// `program` is shown as plain text.
    BottleProgressDialog(const QString& program, Work work, QWidget* parent = nullptr);

    /// Whole percent are shown; never runs backwards, and takes what is no number or out of range for 0 or
    /// 100.
    void setProgress(double percent);

private:
    QProgressBar* m_bar;
    Fenk::Label* m_percent;
};
