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

/// A program's name, icon, size, date and path. Name and icon can be changed, and are saved as soon as they
/// are.
class AppPropertyDlg : public Fenk::Dialog {
    Q_OBJECT
public:
    /// Comes up with what is known of the program and fills in what its bottle knows.
    explicit AppPropertyDlg(const Program& known, QWidget* parent = nullptr);
    ~AppPropertyDlg() override;

    static void openFor(const Program& known, QWidget* over);
    /// Comes up with the name being edited, and goes when it has been.
    static void openForRename(const Program& known, QWidget* over);

    /// Takes a name that is still being written.
    void done(int index) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;  ///< F2 renames

private:
    QWidget* makeRows();
    void showDetails();
    void chooseIcon();
    void tell(const QString& sentence);

    ProgramDetails* m_details;
    AppEntryIconEditor* m_icon;
    NameEditor* m_name;
    Fenk::Label* m_size;
    Fenk::Label* m_time;
    PathLink* m_path;
    Fenk::Label* m_sentence;
    bool m_isForRename = false;
};
