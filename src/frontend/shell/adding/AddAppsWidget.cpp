#include "shell/adding/AddAppsWidget.h"

#include <QHBoxLayout>
#include <QKeyEvent>

#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Tokens.h"
#include "shell/adding/AddAppsHelperWidget.h"
#include "shell/adding/AddingTexts.h"
#include "store/install/YamlProgramInstallerSession.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {
constexpr int FailureMs = 12000;
constexpr int RunWidth = 160;
}  // namespace

AddAppsWidget::AddAppsWidget(QWidget* parent)
    : QWidget(parent), m_helper(new AddAppsHelperWidget), m_run(new SuggestButton(AddingTexts::run())) {
    setObjectName("add_apps_widget");
    setAccessibleName(AddingTexts::title());
    auto* back = new IconButton("fenk-back", tr("Back to the library"));
    back->setObjectName("add_apps_back");
    m_run->setObjectName("add_apps_run");
    m_run->setAccessibleName("add_apps_run");
    m_run->setAccessibleDescription(m_run->text());
    m_run->setMinimumWidth(RunWidth);
    m_run->setEnabled(false);
    auto* head = new QHBoxLayout;
    head->setSpacing(Tokens::Space8);
    head->addWidget(back);
    head->addWidget(new Label(AddingTexts::title(), Label::Title), 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space16, Tokens::Space24, Tokens::Space24);
    layout->setSpacing(Tokens::Space16);
    layout->addLayout(head);
    layout->addWidget(m_helper, 1);
    layout->addWidget(m_run, 0, Qt::AlignHCenter);
    connect(back, &QAbstractButton::clicked, this, &AddAppsWidget::left);
    connect(m_run, &QAbstractButton::clicked, m_helper, &AddAppsHelperWidget::onBtnRunClicked);
    connect(m_helper, &AddAppsHelperWidget::readyChanged, m_run, &QWidget::setEnabled);
    connect(m_helper, &AddAppsHelperWidget::chosen, this, &AddAppsWidget::onChosen);
}

void AddAppsWidget::add(const QStringList& inputs) {
    m_helper->add(inputs);
}

void AddAppsWidget::show(const AddRequest& request) {
    m_helper->show(request);
}

void AddAppsWidget::forget(const QString& path) {
    m_helper->forget(path);
}

void AddAppsWidget::focusTab() {
    m_helper->focusTab();
}

void AddAppsWidget::onChosen(const AddRequest& request) {
    if (request.kind == AddRequest::Kind::Manifest) {
        installManifest(request.items.first().manifest);
        return;
    }
    const AddRequest kept = request;  // the page is emptied meanwhile
    // What is copied may still fail, and be tried again.
    if (kept.kind != AddRequest::Kind::Portable)
        m_helper->clear();
    Q_EMIT left();
    Q_EMIT chosen(kept);
}

void AddAppsWidget::installManifest(const QByteArray& manifest) {
    if (m_session) {
        tell(tr("The installation that you began before has not ended yet."));
        return;
    }
    m_session = YamlProgramInstallerSession::ofManifest(manifest);  // deletes itself when it is done
    connect(m_session, &YamlProgramInstallerSession::signalError, this, &AddAppsWidget::tell);
    m_session->start();
}

/// On the window, since the user may have left the page.
void AddAppsWidget::tell(const QString& errorText) {
    FloatingMessage::show(window(), warningIcon(), errorText, FailureMs);
}

void AddAppsWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        Q_EMIT left();
    else
        QWidget::keyPressEvent(event);
}
