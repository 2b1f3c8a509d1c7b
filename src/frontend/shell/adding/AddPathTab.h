#pragma once

#include "shell/adding/AddTab.h"

class QLabel;
class QPushButton;

/// Takes a file or a folder of this computer: dropped, or chosen in a dialog.
class AddPathTab : public AddTab {
    Q_OBJECT
public:
    /// Checks it, and then shows whether it can be added.
    void check(const QString& path);
    void show(const AddedFile& file);
    void refuse(const QString& reason);

protected:
    /// `image` is the name of a picture of ours; the texts are those of the button and of the line below it.
    AddPathTab(const char* image, const QString& choose, const QString& hint, QWidget* parent);

    QPushButton* chooseButton() const { return m_choose; }
    /// Opens the dialog.
    virtual void choose() = 0;

private:
    void paintIcon();

    const char* m_image;
    QLabel* m_icon;
    QPushButton* m_choose;
};
