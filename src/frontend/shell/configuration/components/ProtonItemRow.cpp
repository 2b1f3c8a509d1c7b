#include "shell/configuration/components/ProtonItemRow.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

ProtonItemRow::ProtonItemRow(const QString& name, QWidget* parent)
    : QWidget(parent), m_name(name), m_status(new Label(Label::Small)), m_button(new QPushButton) {
    setObjectName(name);
    auto* title = new Label(name);
    title->setElided(true);
    m_status->setObjectName("proton_status");
    m_status->setFixedWidth(StatusWidth);
    m_button->setObjectName("proton_btn");
    m_button->setFixedWidth(ButtonWidth);
    m_button->setAccessibleDescription(name);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space8, Tokens::Space16, Tokens::Space8);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(title, 1);
    layout->addWidget(m_status);
    layout->addWidget(m_button);
    connect(m_button, &QPushButton::clicked, this, [this] { Q_EMIT pressed(m_name); });
    setInstalled(false);
}

void ProtonItemRow::setInstalled(bool installed) {
    m_status->setText(installed ? tr("installed") : tr("not installed"));
    m_status->setTextRole(installed ? Theme::Success : Theme::Secondary);
    m_button->setText(installed ? tr("View") : tr("Install"));
}
