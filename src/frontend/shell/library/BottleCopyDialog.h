#pragma once

#include <QPointer>

#include "fenk/window/Dialog.h"
#include "shell/library/BottleCopy.h"

class QProgressBar;

/// Shows how far a copy of a bottle is, and how it ended. Closing it does not end the copy: the window then
/// tells its end in a message, and a failure opens the dialog again. Owned by its window; deletes itself when
/// it is closed after the end. After the copy of a portable program it stays open until it is closed by the
/// owner of the copy, or by the user, which means that the program is not wanted.
class BottleCopyDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    BottleCopyDialog(BottleCopy* copy, QWidget* over);

Q_SIGNALS:
    /// Programs ran in the bottle or changed it, and the user wants to try again.
    void repeatRequested();

private:
    void showProgress(qint64 done, qint64 total);
    void showOutcome(const BottleCopy::Outcome& outcome);
    void onButton(int index);

    QPointer<BottleCopy> m_copy;
    QString m_file;
    QProgressBar* m_bar;
    Fenk::Label* m_text;
    bool m_isBackUp;
    bool m_isPortable;
    bool m_isCancelling = false;
    bool m_hasEnded = false;
    bool m_canRepeat = false;
};
