#include "shell/configuration/page/BottlesConfigView.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMimeData>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/ProgramRecord.h"
#include "core/base/SettingsStore.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/run/BottleTasks.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BasicPage.h"
#include "shell/configuration/page/BottleCommands.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/ConfigFoot.h"
#include "shell/configuration/page/ConfigPages.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/DriverWarning.h"
#include "shell/configuration/page/EntriesColumn.h"
#include "shell/configuration/page/EntryMenu.h"
#include "shell/configuration/page/ProgramTrials.h"
#include "shell/configuration/page/ProtonSetup.h"
#include "shell/configuration/page/ToolsPage.h"
#include "shell/configuration/page/UndoBar.h"
#include "shell/configuration/parameters/LogChannels.h"
#include "shell/configuration/parameters/WineParamsCfgWidget.h"
#include "shell/configuration/rules/SettingTable.h"
#include "widgets/FileChoice.h"

using namespace Fenk;

namespace {

constexpr int PagesWidth = 720;
constexpr int Height = 700;
constexpr int LogHeight = 220;
constexpr int ToggleDelayMs = 200;
const char ExpandKey[] = "bottles_configview.expand_toolbar.";

int widthOf(bool expanded) {
    return PagesWidth + (expanded ? EntriesColumn::WideWidth : EntriesColumn::NarrowWidth);
}

}  // namespace

BottlesConfigView::BottlesConfigView(QWidget* parent)
    : AbstractDialog(parent), m_driverCheck(new DriverCheck(this)), m_states(new QStackedWidget) {
    setObjectName("bottles_config_view");
    setAccessibleName("bottles_config_view");
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setTitle(tr("Container Configuration"));
    bodyLayout()->addWidget(m_states);
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
    m_states->addWidget(makeLoadingView());
    m_failed =
        new ListPlaceholder(Theme::icon("fenk-warning"),
                            tr("The settings of this container cannot be read at the moment."), tr("Retry"));
    m_failed->setObjectName("failed_view");
    m_states->addWidget(m_failed);
    m_states->addWidget(makeContent());
    connect(m_failed, &ListPlaceholder::pressed, m_settings, &BottleSettings::load);
    connectBottle();
    setExpanded(settingsStore()->getOption(ExpandKey).toBool(), false);
    m_settings->load();
}

void BottlesConfigView::connectBottle() {
    connect(m_settings, &BottleSettings::stateChanged, this, &BottlesConfigView::refreshState);
    connect(m_settings, &BottleSettings::refused, this, &BottlesConfigView::showError);
    connect(m_settings, &BottleSettings::programsRunning, this, &BottlesConfigView::askAboutPrograms);
    connect(m_settings, &BottleSettings::undoable, this,
            [this](Setting setting) { m_foot->undoBar()->offer(SettingTable::label(setting)); });
    connect(m_settings, &BottleSettings::changed, this, [this] {
        if (!m_settings->canUndo())
            m_foot->undoBar()->withdraw();
    });
    connect(m_foot->undoBar(), &UndoBar::undone, m_settings, &BottleSettings::undo);
    connect(m_settings, &BottleSettings::runnerChanged, this, &BottlesConfigView::checkDriver);
    connect(m_basic, &BasicPage::chosen, this, &BottlesConfigView::choose);
    connect(m_programs, &BottlePrograms::changed, this, &BottlesConfigView::refreshPrograms);
    connect(m_programs, &BottlePrograms::failed, this, &BottlesConfigView::showError);
    connect(m_trials, &ProgramTrials::line, m_logs, &DebuggingLogsFrame::append);
    connect(m_trials, &ProgramTrials::failed, this, &BottlesConfigView::showError);
    refreshPrograms();
}

QWidget* BottlesConfigView::makeLoadingView() {
    auto* text = new Label(tr("Initializing the wine Container, please wait…"), Label::Heading);
    auto* detail = new Label(tr("Loading Bottles"), Label::Secondary);
    m_spinner = new Spinner;
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

QWidget* BottlesConfigView::makeContent() {
    m_entries = new EntriesColumn(m_programs);
    connect(m_entries, &EntriesColumn::clicked, this, &BottlesConfigView::onAppEntryBtnClicked);
    connect(m_entries, &EntriesColumn::menuRequested, this, &BottlesConfigView::onAppEntryBtnRightClicked);
    connect(m_entries, &EntriesColumn::addRequested, this, &BottlesConfigView::onAddEntryButtonClicked);
    connect(m_entries, &EntriesColumn::toggleRequested, this, &BottlesConfigView::toggleExpanded);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant& width) {
        m_entries->setFixedWidth(width.toInt());
        setFixedWidth(PagesWidth + width.toInt());
    });
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
    auto* tools = new ToolsPage(m_programs);
    m_pages->addPage(Basic, tr("Basic Configuration"), m_basic);
    m_pages->addPage(WineParameter, tr("Wine Parameter"), m_params);
    m_pages->addPage(DebuggingTools, tr("Debugging Tools"), tools);
    connect(tools, &ToolsPage::importRequested, this, &BottlesConfigView::slotsimportRegs);
    connect(m_pages, &ConfigPages::pageShown, m_params, &WineParamsCfgWidget::refreshTranslators);
    connect(m_pages, &ConfigPages::searched, this, &BottlesConfigView::search);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        onConfigurePageToggled(Basic);
        m_pages->focusSearch();
    });

    m_logs = new DebuggingLogsFrame;
    m_logs->hide();
    connect(m_logs, &DebuggingLogsFrame::folderRequested, this, &BottlesConfigView::slotsOpenLogsDir);
    m_splitter = new QSplitter(Qt::Vertical);
    m_splitter->setChildrenCollapsible(false);
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
    m_spinner->stop();
    if (isLoading)
        m_spinner->startDelayed();
    m_failed->setDetail(m_settings->errorText());
    if (isLoading)
        m_states->setCurrentIndex(0);
    else if (state == State::Failed)
        m_states->setCurrentIndex(1);
    else
        m_states->setCurrentIndex(2);
    m_hasLoaded = m_hasLoaded && state != State::Failed;
    if (state != State::Ready || m_isLoading)
        return;
    m_params->setBottle(m_bottle, BottleRecord::path(m_settings->record()));
    m_programs->setRecord(m_settings->record());
    const bool isFirst = !m_hasLoaded;
    m_hasLoaded = true;
    if (isFirst)
        Q_EMIT bottlesLoaded();
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
    m_params->setEntry(m_trials->currentParameters());
    setTitle(entry ? tr("Configuration of %1").arg(entry->name()) : tr("Container Configuration"));
}

void BottlesConfigView::startRun(bool inTerminal) {
    if (!m_trials->start(inTerminal))
        return;
    m_logs->clear();
    showLogs();
}

void BottlesConfigView::choose(Setting setting, const QVariant& value) {
    if (setting != Setting::Runner || !LogChannels::isProtonVersion(value.toString())) {
        m_settings->choose(setting, value);
        return;
    }
    ProtonSetup::prepare(m_settings,
                         [settings = m_settings, setting, value] { settings->choose(setting, value); });
}

void BottlesConfigView::checkDriver() {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    m_driverCheck->check(BottleRecord::path(m_settings->record()),
                         entry ? ProgramRecord::path(entry->record) : QString(),
                         m_settings->values().text(Setting::Runner));
}

void BottlesConfigView::askAboutPrograms(Setting component, const QStringList& programs) {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    auto* question = new RunningProgramsQuestion(entry ? entry->name() : m_bottle, programs, this);
    question->setMessage(
        tr("%1 can only be changed while nothing runs in the container. These programs have to "
           "be closed first: what has not been saved in them will be lost.")
            .arg(SettingTable::label(component)));
    connect(question, &RunningProgramsQuestion::answered, m_settings,
            [settings = m_settings, component](bool close) {
                settings->answerProgramsRunning(component, close);
            });
    question->open();
}

void BottlesConfigView::showError(const QString& errorText) {
    FloatingMessage::show(this, Theme::icon("fenk-error"), errorText);
}

void BottlesConfigView::search(const QString& text) {
    m_basic->filter(text.trimmed());
    if (!text.isEmpty())
        onConfigurePageToggled(Basic);
}

void BottlesConfigView::setExpanded(bool expanded, bool animated) {
    m_isExpanded = expanded;
    m_entries->setNarrow(!expanded);
    const int column = widthOf(expanded) - PagesWidth;
    const int duration = animated ? Theme::instance()->duration(Tokens::MoveMs) : 0;
    m_slide.stop();
    if (duration > 0) {
        m_slide.setDuration(duration);
        m_slide.setEasingCurve(QEasingCurve::OutCubic);
        m_slide.setStartValue(m_entries->width());
        m_slide.setEndValue(column);
        m_slide.start();
    } else {
        m_entries->setFixedWidth(column);
        setFixedSize(widthOf(expanded), Height);
    }
}

void BottlesConfigView::toggleExpanded() {
    const bool expanded = !m_isExpanded;
    settingsStore()->setOption(ExpandKey, expanded);
    settingsStore()->sync();
    QTimer::singleShot(ToggleDelayMs, this, [this, expanded] { setExpanded(expanded, true); });
}

void BottlesConfigView::onConfigurePageToggled(int page) {
    m_pages->showPage(page);
}

void BottlesConfigView::onAppEntryBtnClicked(AppEntryButton* button) {
    changeSelectedIndex(button);
}

void BottlesConfigView::changeSelectedIndex(AppEntryButton* button) {
    changeSelectedIndex(m_programs->list().indexOf(button->id()));
}

void BottlesConfigView::changeSelectedIndex(int index) {
    m_programs->select(index);
}

void BottlesConfigView::onAppEntryBtnRightClicked(AppEntryButton* button, const QPoint& at) {
    changeSelectedIndex(button);
    auto* menu = new EntryMenu(m_programs, !m_trials->isBusy(), this);
    using Self = BottlesConfigView;
    connect(menu, &EntryMenu::terminalRequested, this, &Self::onOpenInTerminalActionTriggered);
    connect(menu, &EntryMenu::folderRequested, this, &Self::onOpenFolderActionTriggered);
    connect(menu, &EntryMenu::internetSettingsRequested, this, &Self::onOpenInternalOptsTriggered);
    connect(menu, &EntryMenu::deleteRequested, this, &Self::onDeleteActionTriggered);
    menu->popup(at);
}

void BottlesConfigView::onOpenInTerminalActionTriggered() {
    startRun(true);
}

void BottlesConfigView::onOpenFolderActionTriggered() {
    BottleUtils::openProgramFolder(m_bottle, m_programs->currentRef().uuid);
}

void BottlesConfigView::onOpenInternalOptsTriggered() {
    BottleTasks::openInternetOptions(m_bottle);
}

void BottlesConfigView::onDeleteActionTriggered() {
    askToDeleteEntry(m_programs, this);
}

void BottlesConfigView::slotsOpenLogsDir() {
    const QString path = BottleRecord::path(m_settings->record());
    if (!path.isEmpty())
        DesktopUtils::openLocal(BottleLogs::directory(path));
}

void BottlesConfigView::slotsimportRegs() {
    BottleTasks::importRegistry(this, m_bottle);
}

void BottlesConfigView::showLogs() {
    if (m_logs->isHidden())
        slotstoggleLogsView();
}

void BottlesConfigView::slotstoggleLogsView() {
    const bool shows = m_logs->isHidden();
    m_logs->setVisible(shows);
    m_foot->setLogShown(shows);
    if (shows)
        m_splitter->setSizes({m_splitter->height() - LogHeight, LogHeight});
}

void BottlesConfigView::slotsAppendLogs(const QString& line) {
    m_logs->append(line, false);
}

void BottlesConfigView::onAddEntryButtonClicked() {
    const QString path = BottleRecord::path(m_settings->record());
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Program, this, tr("Adding application shortcuts"),
                         path + "/drive_c", tr("Windows Application Programs (*.exe *.msi *.bat)"));
    dialog->setObjectName("add_entry_dialog");
    connect(dialog, &QFileDialog::fileSelected, m_programs,
            [programs = m_programs](const QString& file) { programs->addFiles({file}); });
    dialog->open();
}

void BottlesConfigView::openBottlesDebugTerminal() {
    BottleCommands::openTerminal(m_bottle);
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
