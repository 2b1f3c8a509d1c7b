#pragma once

#include <QWidget>

#include "shell/configuration/rules/ComponentSetup.h"
#include "shell/configuration/rules/SettingRules.h"
#include "shell/configuration/rules/SettingTable.h"

class ComponentsSwitcherWidget;
class QComboBox;
class QSpinBox;

namespace Fenk {
class IconButton;
class SettingRow;
class SwitchButton;
}  // namespace Fenk

/// One setting on the basic page: label, tip, control, and a way back to the usual value while another one is
/// set. Made of its line in SettingTable. Shows values without reporting them.
class SettingControlRow : public QWidget {
    Q_OBJECT
public:
    explicit SettingControlRow(const SettingInfo& info, QWidget* parent = nullptr);

    Setting setting() const { return m_info.setting; }
    QWidget* control() const { return m_control; }
    /// Null for a setting that is no component.
    ComponentsSwitcherWidget* switcher() const { return m_switcher; }

    void setValue(const QVariant& value, const SettingRowState& state);
    /// A second line for what has gone wrong; the usual tip when it is empty.
    void setProblem(const QString& text);

    /// While the component is being set up there is no way back but to cancel that.
    void setBusy(bool busy);

    /// Whether label, tip or explanation contain the text in any case.
    bool matches(const QString& text) const;
    /// A line above, between two rows.
    void setSeparated(bool separated);

Q_SIGNALS:
    void chosen(Setting setting, const QVariant& value);
    void setupLeft(Setting setting);

protected:
    /// The wheel scrolls the page: over a list it would change the bottle. Keys choose only from an open
    /// list, or each version that they pass over would be fetched.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeControl();
    void guard(QWidget* control);
    void updateTip();
    void updateReset();

    const SettingInfo& m_info;
    QComboBox* m_combo = nullptr;
    QSpinBox* m_spin = nullptr;
    Fenk::SwitchButton* m_switch = nullptr;
    ComponentsSwitcherWidget* m_switcher = nullptr;
    QWidget* m_control;
    Fenk::IconButton* m_reset;
    Fenk::SettingRow* m_row = nullptr;
    QWidget* m_line;
    bool m_isStandard = true;
    bool m_canBeUsed = true;
    bool m_isBusy = false;
    QString m_reason;
    QString m_problem;
};
