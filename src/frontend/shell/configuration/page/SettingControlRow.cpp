#include "shell/configuration/page/SettingControlRow.h"

#include <QComboBox>
#include <QEvent>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QSpinBox>
#include <algorithm>
#include <iterator>

#include "fenk/controls/SettingRow.h"
#include "fenk/controls/SwitchButton.h"
#include "shell/configuration/components/WineVersionCombobox.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"

using namespace Fenk;

namespace {

constexpr int ComboWidth = 280;
constexpr int SpinWidth = 120;

QString translated(const char* text) {
    return *text ? QCoreApplication::translate("BasicPage", text) : QString();
}

bool isVertical(const QKeyEvent* event) {
    return event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
}

/// Whether a list that is not in sight would take the key for a choice. Space opens it.
bool choosesUnseen(const QKeyEvent* event) {
    constexpr int Keys[] = {Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
    const bool isText =
        event->key() != Qt::Key_Space && !event->text().isEmpty() && event->text().at(0).isPrint();
    return isVertical(event) || isText || std::count(std::begin(Keys), std::end(Keys), event->key()) > 0;
}

/// Enables or disables the whole row that a control stands in.
void setItemEnabled(QWidget* control, bool enabled) {
    QWidget* item = control;
    while (item && item->accessibleName() != QLatin1String("basic_settings_item"))
        item = item->parentWidget();
    if (item)
        item->setEnabled(enabled);
}

}  // namespace

SettingControlRow::SettingControlRow(const SettingInfo& info, QWidget* parent)
    : ResettableRow(parent), m_info(info) {
    setUp(SettingTable::label(info.setting), translated(info.tip), translated(info.help), makeControl());
    control()->setObjectName(info.objectName);
    row()->setAccessibleName("basic_settings_item");
    connect(this, &ResettableRow::resetRequested, this, &SettingControlRow::reset);
}

QWidget* SettingControlRow::makeControl() {
    const auto report = [this](const QVariant& value) { Q_EMIT chosen(setting(), value); };
    switch (m_info.control) {
        case SettingControl::Switch:
            m_switch = new SwitchButton;
            connect(m_switch, &QAbstractButton::clicked, this, report);
            return m_switch;
        case SettingControl::Number:
            m_spin = new QSpinBox;
            m_spin->setRange(SettingChoices::MinimumDpi, SettingChoices::MaximumDpi);
            m_spin->setSingleStep(SettingChoices::DpiStep);
            m_spin->setFixedWidth(SpinWidth);
            guard(m_spin);
            connect(m_spin, qOverload<int>(&QSpinBox::valueChanged), this, report);
            return m_spin;
        case SettingControl::Component:
            m_switcher = new ComponentsSwitcherWidget(setting() == Setting::Runner ? new WineVersionCombobox
                                                                                   : new QComboBox);
            m_switcher->setName(SettingTable::label(setting()));
            guard(m_switcher->combo());
            connect(m_switcher, &ComponentsSwitcherWidget::chosen, this, report);
            connect(m_switcher, &ComponentsSwitcherWidget::left, this,
                    [this] { Q_EMIT setupLeft(setting()); });
            return m_switcher;
        default:
            break;
    }
    m_combo = new QComboBox;
    m_combo->setFixedWidth(ComboWidth);
    guard(m_combo);
    for (const SettingChoice& choice : SettingChoices::of(setting()))
        m_combo->addItem(choice.text, choice.value);
    connect(m_combo, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this, report](int index) { report(m_combo->itemData(index)); });
    return m_combo;
}

void SettingControlRow::guard(QWidget* control) {
    control->setFocusPolicy(Qt::StrongFocus);
    control->installEventFilter(this);
}

bool SettingControlRow::eventFilter(QObject* watched, QEvent* event) {
    auto* combo = qobject_cast<QComboBox*>(watched);
    const bool isKey = combo && event->type() == QEvent::KeyPress;
    if (event->type() != QEvent::Wheel && !(isKey && choosesUnseen(static_cast<QKeyEvent*>(event))))
        return ResettableRow::eventFilter(watched, event);
    if (isKey && isVertical(static_cast<QKeyEvent*>(event)))
        combo->showPopup();
    else
        event->ignore();  // goes on to the page
    return true;
}

void SettingControlRow::setValue(const QVariant& value, const SettingRowState& state) {
    const QSignalBlocker blocker(control());
    if (m_switch)
        m_switch->setChecked(state.isForcedOn || value.toBool());
    else if (m_spin && m_spin->value() != value.toInt())  // or digits that are being typed would go
        m_spin->setValue(value.toInt());
    else if (m_combo)
        m_combo->setCurrentIndex(m_combo->findData(value));
    control()->setEnabled(state.isControlEnabled);
    setItemEnabled(control(), state.isEnabled);
    m_isStandard = value == SettingValues::standard(setting());
    m_canBeUsed = state.canBeUsed();
    updateReset();
    m_reason = state.reason;
    updateTip();
}

void SettingControlRow::setBusy(bool busy) {
    m_isBusy = busy;
    updateReset();
}

void SettingControlRow::updateReset() {
    setResettable(!m_isStandard && m_canBeUsed && !m_isBusy);
}

void SettingControlRow::setProblem(const QString& text) {
    m_problem = text;
    updateTip();
}

void SettingControlRow::updateTip() {
    row()->setTip(!m_problem.isEmpty() ? m_problem : !m_reason.isEmpty() ? m_reason : translated(m_info.tip));
}

bool SettingControlRow::matches(const QString& text) const {
    const QString all = SettingTable::label(setting()) + '\n' + translated(m_info.tip) + '\n' +
                        translated(m_info.help) + '\n' + m_info.label;
    return all.contains(text, Qt::CaseInsensitive);
}
