#pragma once

#include <QPushButton>

namespace Fenk {

/// The one suggested action of a window, filled with the accent.
class SuggestButton : public QPushButton {
    Q_OBJECT
public:
    explicit SuggestButton(QWidget* parent = nullptr);
    explicit SuggestButton(const QString& text, QWidget* parent = nullptr);
};

}  // namespace Fenk
