#pragma once

#include <QWidget>

namespace Fenk {
class IconButton;
class SettingRow;
}  // namespace Fenk

/// One row of a page of settings: label, tip, control, what the setting does as a tool tip, and a way back to
/// the usual value while another one is set. Derived classes call setUp() in their constructor.
class ResettableRow : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;

    QWidget* control() const { return m_control; }
    /// Whether the way back is offered; it is not at first.
    bool isResettable() const;
    void setResettable(bool isResettable);
    /// A line above, between two rows.
    void setSeparated(bool separated);

Q_SIGNALS:
    void resetRequested();

protected:
    /// Takes the control, and gives it its accessible name and description.
    void setUp(const QString& label, const QString& tip, const QString& help, QWidget* control);
    Fenk::SettingRow* row() const { return m_row; }

private:
    QWidget* m_control = nullptr;
    QWidget* m_line = nullptr;
    Fenk::IconButton* m_reset = nullptr;
    Fenk::SettingRow* m_row = nullptr;
};
