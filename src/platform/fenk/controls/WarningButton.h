#pragma once

#include <QPushButton>

namespace Fenk {

/// A destructive action. The text has the danger colour; the button that confirms the action is filled.
class WarningButton : public QPushButton {
    Q_OBJECT
public:
    explicit WarningButton(QWidget* parent = nullptr);
    explicit WarningButton(const QString& text, QWidget* parent = nullptr);

    void setFilled(bool filled);
};

}  // namespace Fenk
