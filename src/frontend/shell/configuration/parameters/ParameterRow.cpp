#include "shell/configuration/parameters/ParameterRow.h"

#include "fenk/controls/SettingRow.h"

ParameterRow::ParameterRow(const QString& label, const QString& tip, const QString& help, QWidget* control,
                           QWidget* parent)
    : ResettableRow(parent), m_words(label + '\n' + help), m_tip(tip) {
    setUp(label, tip, help, control);
}

void ParameterRow::setTip(const QString& tip) {
    m_tip = tip;
    row()->setTip(tip);
}

bool ParameterRow::matches(const QString& text) const {
    return (m_words + '\n' + m_tip).contains(text, Qt::CaseInsensitive);
}
