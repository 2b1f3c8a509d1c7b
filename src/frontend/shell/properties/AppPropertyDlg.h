#pragma once

#include "fenk/window/Dialog.h"
#include "programs/Program.h"

class AppEntryIconEditor;
class NameEditor;
class PathLink;
class ProgramDetails;

namespace Fenk {
class Label;
}

/// Shows a program's name, icon, size, date and path. Changes of name and icon are saved at once, also when
/// the dialog is closed meanwhile. Errors are shown below the rows.
class AppPropertyDlg : public Fenk::Dialog {
    Q_OBJECT
public:
    /// Shows `known` until the bottle's record has been read.
    explicit AppPropertyDlg(const Program& known, QWidget* parent = nullptr);
    ~AppPropertyDlg() override;

    /// Opens a dialog that deletes itself.
    static void openFor(const Program& known, QWidget* over);
    /// The same with the name being edited; closes when the name was edited.
    static void openForRename(const Program& known, QWidget* over);

    /// Commits a name that is being edited.
    void done(int index) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;  ///< F2 renames

private:
    QWidget* makeRows();
    void showDetails();
    void chooseIcon();
    void showError(const QString& errorText);

    ProgramDetails* m_details;
    AppEntryIconEditor* m_icon;
    NameEditor* m_name;
    Fenk::Label* m_size;
    Fenk::Label* m_time;
    PathLink* m_path;
    Fenk::Label* m_error;
    bool m_isForRename = false;
};
