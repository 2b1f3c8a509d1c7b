#pragma once

#include <QFrame>

class QVBoxLayout;

namespace Fenk {

/// A raised panel for rows that belong together, with a line between two rows. By default as high as its
/// rows.
class Card : public QFrame {
    Q_OBJECT
public:
    explicit Card(QWidget* parent = nullptr);

    void addRow(QWidget* row);

    /// Shows a hover background, for cards that are clickable as a whole.
    void setHoverable(bool hoverable);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_rows;
};

}  // namespace Fenk
