#include "shell/configuration/components/InstallingTips.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/components/BottleDependencies.h"

using namespace Fenk;

InstallingTips::InstallingTips(BottleDependencies* dependencies, QWidget* parent)
    : QWidget(parent),
      m_dependencies(dependencies),
      m_spinner(new Spinner),
      m_tips(new Label(Label::Body)),
      m_detail(new Label(Label::Small)),
      m_progress(new QProgressBar),
      m_cancel(new QPushButton(tr("Cancel"))) {
    setObjectName("components_tips_widget");
    m_tips->setObjectName("installing_tips");
    m_tips->setElided(true);
    m_detail->setObjectName("installing_detail");
    m_detail->setElided(true);
    m_progress->setObjectName("installing_progressbar");
    m_progress->setTextVisible(false);
    m_progress->setRange(0, 100);
    m_cancel->setObjectName("cancel_btn");
    auto* words = new QVBoxLayout;
    words->setSpacing(Tokens::Space4);
    words->addWidget(m_tips);
    words->addWidget(m_progress);
    words->addWidget(m_detail);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space8, Tokens::RingExtent, Tokens::Space8);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_spinner);
    layout->addLayout(words, 1);
    layout->addWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        m_cancel->setEnabled(false);
        m_dependencies->cancel(m_dependencies->states().current());
    });
    connect(dependencies, &BottleDependencies::queueChanged, this, &InstallingTips::refresh);
    refresh();
}

void InstallingTips::refresh() {
    const QString name = m_dependencies->states().current();
    const bool isOther = name != m_cancel->accessibleDescription();
    if (isOther)
        m_cancel->setEnabled(true);
    m_cancel->setAccessibleDescription(name);
    if (name.isEmpty()) {
        m_spinner->stop();
        hide();
        return;
    }
    const DependencyState state = m_dependencies->state(name);
    m_tips->setText(tr("Installing %1...").arg(name));
    m_progress->setAccessibleName(m_tips->text());
    m_progress->setVisible(state.percent() >= 0);
    m_progress->setValue(qMax(0, state.percent()));
    QStringList details;
    if (state.phase == DependencyState::Phase::Downloading)
        details += state.text();
    if (!m_dependencies->description().isEmpty())
        details += m_dependencies->description();
    const int waiting = m_dependencies->states().queue().size() - 1;
    if (waiting > 0)
        details += tr("%n more waiting", nullptr, waiting);
    m_detail->setText(details.join(QString::fromUtf8("  ·  ")));
    m_detail->setVisible(!details.isEmpty());
    m_spinner->start();
    show();
}
