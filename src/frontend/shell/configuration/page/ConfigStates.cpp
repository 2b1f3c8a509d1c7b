#include "shell/configuration/page/ConfigStates.h"

#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "programs/ListPlaceholder.h"

using namespace Fenk;

namespace {
enum Page { Loading, Failed, Content };
}

ConfigStates::ConfigStates(QWidget* content)
    : m_spinner(new Spinner),
      m_failed(new ListPlaceholder(Theme::icon("fenk-warning"),
                                   tr("The settings of this container cannot be read at the moment."),
                                   tr("Retry"))) {
    m_failed->setObjectName("failed_view");
    connect(m_failed, &ListPlaceholder::pressed, this, &ConfigStates::retried);
    addWidget(makeLoadingView());
    addWidget(m_failed);
    addWidget(content);
}

QWidget* ConfigStates::makeLoadingView() {
    auto* text = new Label(tr("Initializing the wine Container, please wait…"), Label::Heading);
    auto* detail = new Label(tr("Loading Bottles"), Label::Secondary);
    auto* view = new QWidget;
    view->setObjectName("loading_view");
    auto* layout = new QVBoxLayout(view);
    layout->setSpacing(Tokens::Space12);
    layout->addStretch(2);
    layout->addWidget(m_spinner, 0, Qt::AlignHCenter);
    layout->addWidget(text, 0, Qt::AlignHCenter);
    layout->addWidget(detail, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    return view;
}

void ConfigStates::showLoading() {
    m_spinner->stop();
    m_spinner->startDelayed();
    setCurrentIndex(Loading);
}

void ConfigStates::showFailed(const QString& reason) {
    m_spinner->stop();
    m_failed->setDetail(reason);
    setCurrentIndex(Failed);
}

void ConfigStates::showContent() {
    m_spinner->stop();
    setCurrentIndex(Content);
}
