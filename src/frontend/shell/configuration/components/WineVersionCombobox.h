#pragma once

#include <QComboBox>

/// Chooses a Wine. Each time its list is shown, the list is made anew: the runners that are installed, then
/// those that can be fetched. What is chosen stays.
class WineVersionCombobox : public QComboBox {
    Q_OBJECT
public:
    using QComboBox::QComboBox;

    void showPopup() override;

private:
    void rebuild();
};
