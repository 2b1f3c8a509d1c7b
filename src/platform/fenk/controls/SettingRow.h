#pragma once

#include <QWidget>

namespace Fenk {

class Label;

/// A row of a card: what is set on the left, its explanation below in small, the control on the right edge.
/// Gives the control its accessible name and description if it has none.
class SettingRow : public QWidget {
    Q_OBJECT
public:
    SettingRow(const QString& name, const QString& tip, QWidget* control, QWidget* parent = nullptr);

    QWidget* control() const { return m_control; }
    void setTip(const QString& tip);

private:
    Label* m_name;
    Label* m_tip;
    QWidget* m_control;
};

}  // namespace Fenk
