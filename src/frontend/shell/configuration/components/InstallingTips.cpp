#include "shell/configuration/components/InstallingTips.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/components/BottleDependencies.h"

using namespace Fenk;

namespace {

/// What the service says in English, for the user. What is not known here is shown as it is.
constexpr const char* Steps[] = {
    QT_TRANSLATE_NOOP("InstallingTips", "Downloading %1"),
    QT_TRANSLATE_NOOP("InstallingTips", "Unpacking %1"),
    QT_TRANSLATE_NOOP("InstallingTips", "Installing %1 with winetricks"),
    QT_TRANSLATE_NOOP("InstallingTips", "Installing %1"),
};

QString translated(const QString& step) {
    for (const char* format : Steps) {
        const QStringList around = QString(format).split("%1");
        if (step.startsWith(around[0]) && step.endsWith(around[1]))
            return InstallingTips::tr(format).arg(
                step.mid(around[0].size(), step.size() - around[0].size() - around[1].size()));
    }
    return step;
}

}  // namespace

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
    m_detail->setObjectName("installing_detail");
    m_detail->setElided(true);
    m_progress->setObjectName("installing_progressbar");
    m_progress->setTextVisible(false);
    m_cancel->setObjectName("cancel_btn");
    auto* line = new QHBoxLayout;
    line->setSpacing(Tokens::Space16);
    line->addWidget(m_tips);
    line->addWidget(m_detail, 1);
    auto* words = new QVBoxLayout;
    words->setSpacing(Tokens::Space4);
    words->addLayout(line);
    words->addWidget(m_progress);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, Tokens::RingExtent, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_spinner);
    layout->addLayout(words, 1);
    layout->addWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        m_cancel->setEnabled(false);
        m_dependencies->cancel(m_dependencies->states().current());
    });
    connect(dependencies, &BottleDependencies::refused, m_cancel, [this] { m_cancel->setEnabled(true); });
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
        return;
    }
    const DependencyState state = m_dependencies->state(name);
    m_tips->setText(tr("Installing %1...").arg(name));
    m_progress->setAccessibleName(m_tips->text());
    m_progress->setRange(0, state.percent < 0 ? 0 : 100);
    m_progress->setValue(qMax(0, state.percent));
    QStringList details;
    if (state.phase == DependencyState::Phase::Downloading)
        details += state.text();
    if (!state.description.isEmpty())
        details += translated(state.description);
    const int waiting = m_dependencies->states().queue().size() - 1;
    if (waiting > 0)
        details += tr("%1 more waiting").arg(waiting);
    m_detail->setText(details.join(QString::fromUtf8("  ·  ")));
    m_spinner->start();
}
