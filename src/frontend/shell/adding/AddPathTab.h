#pragma once

#include "shell/adding/AddTab.h"

class QLabel;
class QPushButton;

/// Takes files or a folder of this computer: dropped, or chosen in a dialog.
class AddPathTab : public AddTab {
    Q_OBJECT
public:
    /// Checks them, and then shows whether they can be added.
    void check(const QStringList& inputs);
    void show(const AddRequest& request);

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
