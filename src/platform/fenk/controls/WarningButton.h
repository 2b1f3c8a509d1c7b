#pragma once

#include <QPushButton>

namespace Fenk {

/// An action that loses something. Its word is danger-coloured; the question that confirms it has the filled
/// form.
class WarningButton : public QPushButton {
    Q_OBJECT
public:
    explicit WarningButton(QWidget* parent = nullptr);
    explicit WarningButton(const QString& text, QWidget* parent = nullptr);

    void setFilled(bool filled);
};

}  // namespace Fenk
