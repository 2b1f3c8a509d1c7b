#pragma once

#include "fenk/window/AbstractDialog.h"

class QComboBox;
class QPushButton;

/// Asks for a Windows font and the font of this machine that replaces it. accepted() says that both are
/// there.
class FontReplaceDialog : public Fenk::AbstractDialog {
    Q_OBJECT
public:
    explicit FontReplaceDialog(QWidget* parent = nullptr);

    QString windowsFont() const;
    QString replacement() const;

Q_SIGNALS:
    /// The dialog is gone, with or without an answer.
    void closedlg();

private:
    QComboBox* m_windows;
    QComboBox* m_linux;
    QPushButton* m_ok;
};
