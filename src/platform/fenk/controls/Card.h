#pragma once

#include <QFrame>

class QVBoxLayout;

namespace Fenk {

/// A raised ground for rows that belong together, with a line between two of them. As high as its rows
/// unless told otherwise.
class Card : public QFrame {
    Q_OBJECT
public:
    explicit Card(QWidget* parent = nullptr);

    void addRow(QWidget* row);

    /// Shows the hover ground, for cards that are one thing to click on.
    void setHoverable(bool hoverable);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_rows;
};

}  // namespace Fenk
