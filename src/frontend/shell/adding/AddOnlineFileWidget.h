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

    /// While a download runs, the user is told that this address has to wait.
    void setAddress(const QUrl& address);
    /// Ignored while a download runs.
    void clear() override;

private:
    void onTextChanged(const QString& text);
    void onReturn();
    void setBusy(bool busy);
    void onDownloaded(const QString& path);
    void onStopped(const QString& text);
    /// When the page is not shown: on the window, or by the desktop.
    void tellElsewhere(const QString& text, const QIcon& icon);

    Fenk::LineEdit* m_address;
    SetupDownloadRow* m_download;
};
