#include "shell/configuration/page/BottlesConfigView.h"

#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QShortcut>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ProgramRecord.h"
#include "core/base/WineNames.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/LaunchWindows.h"
#include "shell/configuration/components/ComponentsPage.h"
#include "shell/configuration/components/InstallProtonDialog.h"
#include "shell/configuration/dlls/DllOverridePage.h"
#include "shell/configuration/fonts/FontReplacementPage.h"
#include "shell/configuration/hints/CustomSPitter.h"
#include "shell/configuration/offline/OfflineComponentsExportDialog.h"
#include "shell/configuration/offline/OfflineComponentsImportDialog.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BasicPage.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/ColumnSlide.h"
#include "shell/configuration/page/ComponentQuestion.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "shell/configuration/page/ConfigFoot.h"
#include "shell/configuration/page/ConfigPages.h"
#include "shell/configuration/page/ConfigStates.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/DriverWarning.h"
#include "shell/configuration/page/EntriesColumn.h"
#include "shell/configuration/page/HintNavigator.h"
#include "shell/configuration/page/ProgramFindings.h"
#include "shell/configuration/page/ProgramTrials.h"
#include "shell/configuration/page/ProtonSetup.h"
#include "shell/configuration/page/SettingControlRow.h"
#include "shell/configuration/page/TablePages.h"
#include "shell/configuration/page/ToolsPage.h"
#include "shell/configuration/page/UndoBar.h"
#include "shell/configuration/parameters/WineParamsCfgWidget.h"
#include "shell/configuration/rules/SettingTable.h"

using namespace Fenk;

namespace {

bool canBePackaged(const QString& bottle, const QString& runner) {
    return LaunchWindows::instance().packaging && !WineNames::isPublicBottle(bottle) && !runner.isEmpty() &&
           !WineNames::isProton(runner);
}

}  // namespace

BottlesConfigView::BottlesConfigView(QWidget* parent)
    : AbstractDialog(parent), m_driverCheck(new DriverCheck(this)) {
    setObjectName("bottles_config_view");
    setAccessibleName("bottles_config_view");
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setTitle(tr("Container Configuration"));
    connect(this, &QDialog::finished, this, &BottlesConfigView::closed);
    connect(BottlesConfig::instance(), &BottlesConfig::bottles_deleted, this, [this](const QString& bottle) {
        if (bottle == m_bottle)
            close();
    });
}

/// It saves by means of the other two.
BottlesConfigView::~BottlesConfigView() {
    delete m_trials;
}

BottlesConfigView* BottlesConfigView::openWindowOf(const QString& bottle) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* view = qobject_cast<BottlesConfigView*>(widget);
        if (view && view->isVisible() && view->bottle() == bottle)
            return view;
    }
    return nullptr;
}

void BottlesConfigView::loadBottle(const QString& bottle) {
    if (m_settings)
        return;
    m_bottle = bottle;
    m_settings = new BottleSettings(bottle, this);
    m_programs = new BottlePrograms(bottle, this);
    m_trials = new ProgramTrials(m_settings, m_programs, this);
    m_states = new ConfigStates(makeContent());
    bodyLayout()->addWidget(m_states);
    connect(m_states, &ConfigStates::retried, m_settings, &BottleSettings::load);
    connectBottle();
    m_slide->restore();
    m_settings->load();
}

void BottlesConfigView::connectBottle() {
    connect(m_settings, &BottleSettings::stateChanged, this, &BottlesConfigView::refreshState);
    connect(m_settings, &BottleSettings::refused, this, &BottlesConfigView::showError);
    connect(m_settings, &BottleSettings::programsRunning, this, &BottlesConfigView::askAboutPrograms);
    connect(m_settings, &BottleSettings::undoable, this, [this](Setting setting) {
        m_foot->undoBar()->offer(SettingTable::label(setting), m_settings, [this] { m_settings->undo(); });
    });
    connect(m_settings, &BottleSettings::changed, this, [this] {
        if (!m_settings->canUndo())
            m_foot->undoBar()->withdraw(m_settings);
    });
    m_tables->offerUndo(m_foot->undoBar());
    connect(m_settings, &BottleSettings::runnerChanged, this, &BottlesConfigView::checkDriver);
    connect(m_settings, &BottleSettings::runnerChanged, this, &BottlesConfigView::offerPackaging);
    connect(m_settings, &BottleSettings::runnerChanged, this, [this] {
        slotsUpdateMemOptimizedSwitchButtonStates(
            m_basic->row(Setting::Runner)->switcher()->combo()->currentIndex());
    });
    connect(m_basic, &BasicPage::chosen, this, &BottlesConfigView::choose);
    connect(m_programs, &BottlePrograms::changed, this, &BottlesConfigView::refreshPrograms);
    connect(m_programs, &BottlePrograms::failed, this, &BottlesConfigView::showError);
    // The hints may ask for another translator.
    connect(m_trials, &ProgramTrials::runStarted, m_params, &WineParamsCfgWidget::refreshTranslators);
    connect(m_trials, &ProgramTrials::parametersChanged, m_params, &WineParamsCfgWidget::setEntry);
    connect(m_trials, &ProgramTrials::failed, this, &BottlesConfigView::showError);
    refreshPrograms();
}

QWidget* BottlesConfigView::makeContent() {
    m_entries = new EntriesColumn(m_programs);
    connect(m_entries, &EntriesColumn::clicked, this, &BottlesConfigView::onAppEntryBtnClicked);
    connect(m_entries, &EntriesColumn::menuRequested, this, &BottlesConfigView::showEntryMenu);
    connect(m_entries, &EntriesColumn::addRequested, this, &BottlesConfigView::onAddEntryButtonClicked);
    m_slide = new ColumnSlide(m_entries, this);
    auto* content = new QWidget;
    auto* layout = new QHBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_entries);
    layout->addWidget(makeRightSide(), 1);
    return content;
}

QWidget* BottlesConfigView::makeRightSide() {
    m_pages = new ConfigPages;
    m_basic = new BasicPage(m_settings);
    m_params = new WineParamsCfgWidget;
    m_components = new ComponentsPage;
    m_tools = new ToolsPage(m_programs);
    m_pages->addPage(Basic, tr("Basic Configuration"), m_basic);
    m_pages->addPage(WineParameter, tr("Wine Parameter"), m_params);
    m_tables = new TablePages(m_settings, this);
    m_pages->addPage(DllOverride, tr("DLL Override"), m_tables->dlls());
    m_pages->addPage(FontReplacement, tr("Font Replacement"), m_tables->fonts());
    m_pages->addPage(Components, tr("Component Installation"), m_components);
    m_pages->addPage(DebuggingTools, tr("Debugging Tools"), m_tools);
    connect(m_basic, &BasicPage::protonRequested, this, [this] { InstallProtonDialog::openOver(this); });
    connect(m_components, &ComponentsPage::exportRequested, this,
            [this] { OfflineComponentsExportDialog::openFor(m_bottle, this); });
    connect(m_components, &ComponentsPage::importRequested, this,
            [this] { OfflineComponentsImportDialog::openFor(m_bottle, this); });
    connectTools();
    connect(m_pages, &ConfigPages::pageShown, m_params, &WineParamsCfgWidget::refreshTranslators);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_pages,
            &ConfigPages::focusSearch);

    m_logs = new DebuggingLogsFrame;
    m_logs->hide();
    connect(m_logs, &DebuggingLogsFrame::folderRequested, this, &BottlesConfigView::slotsOpenLogsDir);
    connect(m_logs, &DebuggingLogsFrame::anchorClicked, this,
            &BottlesConfigView::slotsHandleLogsAnchorClicked);
    m_hintLinks = new HintNavigator(m_settings, m_pages, m_basic, m_logs->hints(), this);
    m_findings = new ProgramFindings({m_settings, m_programs, m_trials, m_params, m_logs}, this);
    m_splitter = new CustomSPitter(Qt::Vertical);
    m_splitter->addWidget(m_pages);
    m_splitter->addWidget(m_logs);
    m_splitter->setStretchFactor(0, 1);
    m_pages->setMinimumHeight(LogHeight);
    m_logs->setMinimumHeight(LogHeight / 2);

    auto* side = new QWidget;
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space12, Tokens::Space16);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_splitter, 1);
    m_foot = new ConfigFoot(m_trials);
    connect(m_foot, &ConfigFoot::logToggled, this, &BottlesConfigView::slotstoggleLogsView);
    connect(m_foot, &ConfigFoot::runRequested, this, [this] { startRun(false); });
    layout->addWidget(m_foot);
    return side;
}

void BottlesConfigView::refreshState() {
    using State = BottleSettings::State;
    const State state = m_settings->state();
    const bool isLoading = m_isLoading || (state == State::Loading && !m_hasLoaded);
    const bool isEnd = std::exchange(m_showsLoading, isLoading) && !isLoading;
    if (isLoading)
        m_states->showLoading();
    else if (state == State::Failed)
        m_states->showFailed(m_settings->errorText());
    else
        m_states->showContent();
    m_hasLoaded = m_hasLoaded && state != State::Failed;
    if (isEnd)
        Q_EMIT bottlesLoaded();
    if (state == State::Ready && !m_isLoading) {
        m_params->setBottle(m_bottle, BottleRecord::path(m_settings->record()));
        m_components->setBottle(m_bottle, m_settings->record());
        m_programs->setRecord(m_settings->record());
        offerPackaging();
        m_hasLoaded = true;
    }
}

void BottlesConfigView::offerPackaging() {
    m_tools->setPackagingOffered(canBePackaged(m_bottle, m_settings->values().text(Setting::Runner)));
}

void BottlesConfigView::setLoading(bool loading) {
    if (loading == m_isLoading)
        return;
    m_isLoading = loading;
    if (loading) {
        refreshState();
    } else {
        m_hasLoaded = false;
        m_settings->load();
    }
}

void BottlesConfigView::selectProgram(const QString& exePath) {
    m_programs->selectFile(exePath);
}

void BottlesConfigView::selectProgramById(const QString& id) {
    m_programs->selectId(id);
}

void BottlesConfigView::refreshPrograms() {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    m_foot->setHasProgram(entry);
    setTitle(entry ? tr("Configuration of %1").arg(entry->name()) : tr("Container Configuration"));
}

void BottlesConfigView::startRun(bool inTerminal) {
    if (m_trials->start(inTerminal))
        showLogs();
}

void BottlesConfigView::choose(Setting setting, const QVariant& value) {
    if (setting == Setting::Runner && WineNames::isGeProton(value.toString()))
        m_settings->chooseAfter(&ProtonSetup::prepare, setting, value.toString());
    else
        m_settings->choose(setting, value);
}

void BottlesConfigView::checkDriver() {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    m_driverCheck->check(BottleRecord::path(m_settings->record()),
                         entry ? ProgramRecord::path(entry->record) : QString(),
                         m_settings->values().text(Setting::Runner));
}

void BottlesConfigView::askAboutPrograms(Setting component, const QStringList& programs) {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    askToClosePrograms(m_settings, component, programs, entry ? entry->name() : m_bottle, this);
}

void BottlesConfigView::showError(const QString& errorText) {
    FloatingMessage::show(this, Theme::icon("fenk-error"), errorText);
}

void BottlesConfigView::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void BottlesConfigView::dropEvent(QDropEvent* event) {
    QStringList files;
    for (const QUrl& url : event->mimeData()->urls())
        files << url.toLocalFile();
    event->acceptProposedAction();
    if (m_programs->addFiles(files) == 0)
        showError(tr("Only Windows programs (exe, msi, bat) can be added."));
}

/// Return presses nothing by itself: there is no question here to answer.
void BottlesConfigView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        AbstractDialog::keyPressEvent(event);
}

void BottlesConfigView::showEvent(QShowEvent* event) {
    AbstractDialog::showEvent(event);
    if (!event->spontaneous())
        moveToCenter();
}
