#pragma once

#include "shell/adding/AddPathTab.h"

/// Takes a program, an installer or a manifest of this computer.
class AddLocalFileWidget : public AddPathTab {
    Q_OBJECT
public:
    explicit AddLocalFileWidget(QWidget* parent = nullptr);

protected:
    void choose() override;
};
