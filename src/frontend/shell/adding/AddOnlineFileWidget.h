#pragma once

#include "shell/adding/AddTab.h"

class SetupDownloadRow;

namespace Fenk {
class LineEdit;
}

/// Takes the address of a program and downloads it into the user's directory for that. Hiding does not stop a
/// download, destruction does.
class AddOnlineFileWidget : public AddTab {
    Q_OBJECT
public:
    explicit AddOnlineFileWidget(QWidget* parent = nullptr);

    void setAddress(const QUrl& address);
    /// Ignored while a download runs.
    void clear() override;

private:
    void onTextChanged(const QString& text);
    void onReturn();
    void setBusy(bool busy);

    Fenk::LineEdit* m_address;
    SetupDownloadRow* m_download;
};
