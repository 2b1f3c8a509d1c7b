#pragma once

#include <QLineEdit>

namespace Fenk {

/// A field to search in: a glass in front, a cross to empty it, Escape empties it too.
class SearchEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit SearchEdit(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace Fenk
