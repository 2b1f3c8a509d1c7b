#pragma once

#include <QWidget>

namespace Fenk {
class IconButton;
class SettingRow;
}  // namespace Fenk

/// One row of the parameters' page: label, tip, control, what the parameter does as a tool tip, and a way
/// back to the default while something else is set.
class ParameterRow : public QWidget {
    Q_OBJECT
public:
    /// Gives the control its accessible name.
    ParameterRow(const QString& label, const QString& tip, const QString& help, QWidget* control,
                 QWidget* parent = nullptr);

    void setTip(const QString& tip);
    /// Whether something else than the default is set.
    void setChanged(bool changed);
    /// Whether label, tip or explanation contain the text in any case.
    bool matches(const QString& text) const;
    /// A line above, between two rows.
    void setSeparated(bool separated);

Q_SIGNALS:
    void resetRequested();

private:
    QString m_words;
    QString m_tip;
    QWidget* m_control;
    QWidget* m_line;
    Fenk::IconButton* m_reset;
    Fenk::SettingRow* m_row;
};
