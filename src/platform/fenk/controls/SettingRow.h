#pragma once

#include <QWidget>

namespace Fenk {

class Label;

/// A row of a card: name of the setting on the left, explanation below in small, control at the right edge.
/// Sets the accessible name and description of the control if they are empty.
class SettingRow : public QWidget {
    Q_OBJECT
public:
    SettingRow(const QString& name, const QString& tip, QWidget* control, QWidget* parent = nullptr);

    QWidget* control() const { return m_control; }
    void setTip(const QString& tip);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void fitTip();

    Label* m_name;
    Label* m_tip;
    QWidget* m_control;
};

}  // namespace Fenk
