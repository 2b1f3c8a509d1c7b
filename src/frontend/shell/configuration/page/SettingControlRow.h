#pragma once

#include "shell/configuration/rules/ComponentSetup.h"
#include "shell/configuration/rules/SettingRules.h"
#include "shell/configuration/rules/SettingTable.h"
#include "widgets/ResettableRow.h"

class ComponentsSwitcherWidget;
class QComboBox;
class QSpinBox;

namespace Fenk {
class SwitchButton;
}

/// One setting on the basic page, made of its line in SettingTable. Shows values without reporting them.
class SettingControlRow : public ResettableRow {
    Q_OBJECT
public:
    explicit SettingControlRow(const SettingInfo& info, QWidget* parent = nullptr);

    Setting setting() const { return m_info.setting; }
    /// Null for a setting that is no component.
    ComponentsSwitcherWidget* switcher() const { return m_switcher; }

    void setValue(const QVariant& value, const SettingRowState& state);
    /// A second line for what has gone wrong; the usual tip when it is empty.
    void setProblem(const QString& text);

    /// While the component is being set up there is no way back but to cancel that.
    void setBusy(bool busy);

    /// Whether label, tip or explanation contain the text in any case.
    bool matches(const QString& text) const;
    /// Chooses the usual value.
    void reset() { Q_EMIT chosen(setting(), SettingValues::standard(setting())); }

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
    bool m_isStandard = true;
    bool m_canBeUsed = true;
    bool m_isBusy = false;
    QString m_reason;
    QString m_problem;
};
