#pragma once

#include "shell/adding/AddPathTab.h"

/// Takes the folder of an unpacked portable program, or a .zip.
class AddGreenFileWidget : public AddPathTab {
    Q_OBJECT
public:
    explicit AddGreenFileWidget(QWidget* parent = nullptr);

    /// Goes on with what is chosen.
    void execBtnRun();

Q_SIGNALS:
    /// The user wants this folder or .zip as a program in a bottle of its own.
    void chosen(const AddRequest& request);

protected:
    void choose() override;
};
