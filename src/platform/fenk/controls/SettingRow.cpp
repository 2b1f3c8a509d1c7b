#include "fenk/controls/SettingRow.h"

#include <QBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

SettingRow::SettingRow(const QString& name, const QString& tip, QWidget* control, QWidget* parent)
    : QWidget(parent),
      m_name(new Label(name, Label::Body)),
      m_tip(new Label(Label::Small)),
      m_control(control) {
    m_tip->setWordWrap(true);
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addStretch();
    words->addWidget(m_name);
    words->addWidget(m_tip);
    words->addStretch();
    auto* layout = new QHBoxLayout(this);
    const int above = tip.isEmpty() ? Tokens::Space8 : Tokens::Space12;
    layout->setContentsMargins(Tokens::Space16, above, Tokens::Space16, above);
    layout->setSpacing(Tokens::Space24);
    layout->addLayout(words, 1);
    if (control) {
        layout->addWidget(control, 0, Qt::AlignVCenter);
        m_name->setBuddy(control);
        if (control->accessibleName().isEmpty())
            control->setAccessibleName(name);
    }
    setMinimumHeight(Tokens::ControlHeight + 2 * above);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    setTip(tip);
}

void SettingRow::setTip(const QString& tip) {
    m_tip->setText(tip);
    m_tip->setVisible(!tip.isEmpty());
    fitTip();
    if (m_control && m_control->accessibleDescription().isEmpty())
        m_control->setAccessibleDescription(tip);
}

void SettingRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitTip();
}

/// The row is no higher than its size hint, which guesses into how many lines the tip breaks.
void SettingRow::fitTip() {
    m_tip->setMinimumHeight(m_tip->isHidden() ? 0 : m_tip->heightForWidth(m_tip->width()));
}

}  // namespace Fenk
