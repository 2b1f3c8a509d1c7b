#include "shell/configuration/components/ComponentDetails.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QMap>
#include <QPushButton>
#include <QStandardPaths>

#include "backend/TextUtils.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "launch/repair/ComponentTitle.h"
#include "shell/configuration/components/BottleDependencies.h"
#include "shell/configuration/components/ComponentsItemDelegate.h"
#include "shell/configuration/components/ComponentsListView.h"
#include "shell/configuration/components/DependencyFacts.h"
#include "widgets/FileChoice.h"

using namespace Fenk;

namespace {

constexpr int MostLines = 2;
constexpr int Height = 84;

QString shown(const OfferedFile& file) {
    return QString("%1 (%2)").arg(
        file.name, file.size > 0 ? TextUtils::readableSize(file.size) : ComponentDetails::tr("size unknown"));
}

/// The host, or the directory.
QString placeOf(const OfferedFile& file) {
    return file.source.startsWith('/') ? QFileInfo(file.source).path() : file.source;
}

/// The row has the name alone.
QString titleOf(const QString& name, const QString& description) {
    const QString known = componentTitle(name);
    const QString title = known == name ? description : known;
    return title.isEmpty() ? name : ComponentDetails::tr("%1: %2").arg(name, title);
}

QStringList titles(const QStringList& names) {
    QStringList result;
    for (const QString& name : names)
        result += componentTitle(name);
    return result;
}

}  // namespace

ComponentDetails::ComponentDetails(ComponentsListView* list, QWidget* parent)
    : QWidget(parent),
      m_list(list),
      m_words(new QVBoxLayout),
      m_title(new Label(Label::Strong)),
      m_text(new Label(Label::Small)),
      m_reason(new Label(Label::Small)),
      m_choose(new QPushButton(tr("Choose File"))),
      m_button(new QPushButton) {
    setObjectName("component_details");
    setFixedHeight(Height);
    m_title->setElided(true);
    m_text->setObjectName("component_facts");
    m_reason->setObjectName("component_reason");
    m_reason->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_button->setObjectName("component_action_btn");
    m_choose->setObjectName("component_file_btn");
    m_choose->setToolTip(tr("Install from a file that you have downloaded yourself"));
    m_button->setMinimumWidth(Tokens::ButtonMinWidth);
    m_words->setSpacing(2);
    m_words->addWidget(m_title);
    for (Label* label : {m_reason, m_text}) {
        label->setElidedAfter(MostLines);
        label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        m_words->addWidget(label, 1);
    }
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space4, Tokens::RingExtent, Tokens::Space4);
    layout->setSpacing(Tokens::Space16);
    layout->addLayout(m_words, 1);
    layout->addWidget(m_choose, 0, Qt::AlignTop);
    layout->addWidget(m_button, 0, Qt::AlignTop);
    connect(m_choose, &QPushButton::clicked, this, &ComponentDetails::chooseFile);
    connect(list->dependencies(), &BottleDependencies::refused, this,
            [this](const QString& text) { FloatingMessage::show(this, Theme::icon("fenk-error"), text); });
    connect(m_button, &QPushButton::clicked, list, &ComponentsListView::onDownloadComponents);
    connect(list, &ComponentsListView::currentChangedTo, this, &ComponentDetails::refresh);
    connect(list, &ComponentsListView::rowChanged, this, [this](const QString& name) {
        if (name == m_list->currentName())
            refresh();
    });
    refresh();
}

/// What the catalogue has, until the service has answered.
QStringList ComponentDetails::missingNeedsOf(const QString& name) const {
    QStringList missing;
    for (const QString& needed : m_list->needsOf(name)) {
        if (!m_list->dependencies()->state(needed).isInstalled)
            missing += needed;
    }
    return titles(missing);
}

QString ComponentDetails::factsText(const QString& name) const {
    const BottleDependencies* dependencies = m_list->dependencies();
    QStringList lines;
    const OfferedComponent facts = dependencies->facts()->of(name);
    const QStringList first = dependencies->facts()->has(name) ? facts.needs : missingNeedsOf(name);
    if (!first.isEmpty())
        lines += tr("Installed first: %1.").arg(first.join(", "));
    QStringList cached;
    QMap<QString, QStringList> bySource;
    for (const OfferedFile& file : facts.files) {
        if (file.isCached)
            cached += shown(file);
        else
            bySource[placeOf(file)] += shown(file);
    }
    for (auto it = bySource.cbegin(); it != bySource.cend(); ++it)
        lines += it.key().isEmpty() ? tr("Of unknown origin: %1.").arg(it->join(", "))
                                    : tr("From %1: %2.").arg(it.key(), it->join(", "));
    if (!cached.isEmpty())
        lines += tr("Fetched already: %1.").arg(cached.join(", "));
    if (!facts.winetricks.isEmpty())
        lines += tr("The tool winetricks installs it (as \"%1\").").arg(facts.winetricks);
    return lines.join(' ');
}

void ComponentDetails::refresh() {
    const QString name = m_list->currentName();
    const DependencyState state = m_list->dependencies()->state(name);
    const OfferedComponent facts = m_list->dependencies()->facts()->of(name);
    const QString reason = !state.reason.isEmpty() ? state.reason : facts.reason;
    setVisible(!name.isEmpty());
    m_title->setText(titleOf(name, m_list->descriptionOf(name)));
    m_reason->setText(reason);
    m_reason->setTextRole(state.reason.isEmpty() ? Theme::Secondary : Theme::Danger);
    m_reason->setVisible(!reason.isEmpty());
    m_text->setText(factsText(name));
    m_text->setVisible(reason.isEmpty() || !m_text->text().isEmpty());
    shareLines();
    const bool isFailed = state.phase == DependencyState::Phase::Failed || !facts.isAvailable;
    m_choose->setVisible(isFailed && !state.isUnderWay() && !facts.files.isEmpty());
    m_button->setText(ComponentsItemDelegate::actionText(state.action()));
    m_button->setAccessibleDescription(name);
}

/// Where it has failed, the user needs to know the files all the more: there are three lines for both.
void ComponentDetails::shareLines() {
    const bool hasReason = !m_reason->text().isEmpty();
    const bool isLong =
        hasReason && m_reason->fontMetrics().horizontalAdvance(m_reason->text()) > m_title->width();
    m_text->setElidedAfter(isLong ? 1 : MostLines);
    m_words->setStretchFactor(m_reason, isLong ? MostLines : 1);
    m_words->setStretchFactor(m_text, isLong ? 1 : MostLines);
}

void ComponentDetails::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    shareLines();
}

void ComponentDetails::chooseFile() {
    const QString name = m_list->currentName();
    QString wanted = name;
    for (const OfferedFile& file : m_list->dependencies()->facts()->of(name).files) {
        if (!file.isCached) {
            wanted = file.name;
            break;
        }
    }
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Installer, this, tr("Choose %1").arg(wanted),
                         QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                         tr("Installers") + " (*.exe *.msi *.cab *.zip *.7z);;" + tr("All files") + " (*)");
    dialog->setObjectName("component_file_dialog");
    connect(dialog, &QFileDialog::fileSelected, m_list, [list = m_list, name](const QString& path) {
        list->dependencies()->installFrom(QFileInfo(path).canonicalFilePath(), name);
    });
    dialog->open();
}
