#include "shell/configuration/components/InstallProtonDialog.h"

#include <QHBoxLayout>

#include "backend/ComponentManager.h"
#include "backend/DesktopUtils.h"
#include "fenk/controls/Card.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/components/ProtonItemRow.h"

using namespace Fenk;

namespace {

const char* const Names[] = {"lumora-proton9", "ge-proton9", "lumora-ge-proton10"};

}  // namespace

InstallProtonDialog::InstallProtonDialog(QWidget* parent)
    : AbstractDialog(parent), m_problem(new Label(Label::Small)) {
    setObjectName("install_proton_dialog");
    setAccessibleName("install_proton_dialog");
    setTitle(tr("Install proton"));
    setFixedWidth(Tokens::DialogMaxWidth);
    auto* frame = new Card;
    frame->setObjectName("proton_dialog_contentframe");
    for (const char* name : Names) {
        auto* row = new ProtonItemRow(name);
        connect(row, &ProtonItemRow::pressed, this, &InstallProtonDialog::openStore);
        m_rows.append(row);
        frame->addRow(row);
    }
    m_problem->setObjectName("proton_problem");
    m_problem->setTextRole(Theme::Danger);
    m_problem->setWordWrap(true);
    m_problem->hide();
    auto* body = new QVBoxLayout;
    body->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space24, Tokens::Space24);
    body->setSpacing(Tokens::Space8);
    body->addWidget(makeHead());
    body->addWidget(frame);
    body->addWidget(m_problem);
    bodyLayout()->addLayout(body);
    connect(ComponentManager::instance(), &ComponentManager::refresh, this, &InstallProtonDialog::refresh);
    refresh();
}

void InstallProtonDialog::openOver(QWidget* window) {
    auto* dialog = new InstallProtonDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

QWidget* InstallProtonDialog::makeHead() {
    auto* head = new QWidget;
    head->setObjectName("proton_dialog_titlewidget");
    auto* status = new Label(tr("Application Status"), Label::Small);
    status->setFixedWidth(ProtonItemRow::StatusWidth + ProtonItemRow::ButtonWidth + Tokens::Space12);
    auto* layout = new QHBoxLayout(head);
    layout->setContentsMargins(Tokens::Space16, 0, Tokens::Space16, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(new Label(tr("Proton Version"), Label::Small), 1);
    layout->addWidget(status);
    return head;
}

void InstallProtonDialog::refresh() {
    const QStringList& installed = ComponentManager::instance()->runnerInstalled;
    for (ProtonItemRow* row : qAsConst(m_rows))
        row->setInstalled(installed.contains(row->name()));
}

/// A desktop without the app store: the service may fetch the same Proton.
void InstallProtonDialog::openStore(const QString& name) {
    m_problem->hide();
    DesktopUtils::openInAppStore(name, this, [this, name] {
        m_problem->setText(ComponentManager::instance()->runnerSupported.contains(name)
                               ? tr("The app store cannot be opened. Choose %1 as Wine version instead: it "
                                    "is downloaded then.")
                                     .arg(name)
                               : tr("The app store cannot be opened."));
        m_problem->show();
    });
}
