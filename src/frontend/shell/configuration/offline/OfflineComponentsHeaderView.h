#pragma once

#include <QHeaderView>

/// The head of the table: draws a check box in the first section, which a click there, or the space key,
/// toggles. Its owner keeps the state in step with the rows.
class OfflineComponentsHeaderView : public QHeaderView {
    Q_OBJECT
public:
    explicit OfflineComponentsHeaderView(QWidget* parent = nullptr);

    void setCheckState(Qt::CheckState state);
    Qt::CheckState checkState() const { return m_state; }
    /// False: the check box shows, but can't be toggled.
    void setCheckable(bool checkable);

Q_SIGNALS:
    /// The user wants all rows in this state, Checked or Unchecked.
    void headerCheckBoxClicked(Qt::CheckState state);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void toggle();
    void describe();

    Qt::CheckState m_state = Qt::Unchecked;
    bool m_isCheckable = true;
    bool m_isBoxPressed = false;
};
