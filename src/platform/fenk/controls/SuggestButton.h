#pragma once

#include <QPushButton>

namespace Fenk {

/// The suggested action of a window, filled with the accent colour; at most one per window.
class SuggestButton : public QPushButton {
    Q_OBJECT
public:
    explicit SuggestButton(QWidget* parent = nullptr);
    explicit SuggestButton(const QString& text, QWidget* parent = nullptr);
};

}  // namespace Fenk
