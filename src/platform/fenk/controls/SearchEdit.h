#pragma once

#include <QLineEdit>

namespace Fenk {

/// A search field: magnifier icon, clear button; Escape clears it too.
class SearchEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit SearchEdit(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace Fenk
