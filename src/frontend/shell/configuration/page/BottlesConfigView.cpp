#include "shell/configuration/page/BottlesConfigView.h"

#include <QApplication>
#include <QButtonGroup>
#include <QDebug>
#include <QDropEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
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
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/controls/Spinner.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "fenk/window/Dialog.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/run/BottleTasks.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BasicPage.h"
#include "shell/configuration/page/BottleCommands.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/DebugRun.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/DriverWarning.h"
#include "shell/configuration/page/EntriesColumn.h"
#include "shell/configuration/page/ProtonSetup.h"
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
    : AbstractDialog(parent),
      m_run(new DebugRun(this)),
      m_driverCheck(new DriverCheck(this)),
      m_states(new QStackedWidget),
      m_buttonBox(new QButtonGroup(this)),
      m_pages(new QStackedWidget) {
    setObjectName("bottles_config_view");
    setAccessibleName("bottles_config_view");
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setTitle(tr("Container Configuration"));
    bodyLayout()->addWidget(m_states);
    connect(this, &QDialog::finished, this, &BottlesConfigView::closed);
    connect(m_run, &DebugRun::started, this, &BottlesConfigView::refreshRun);
    connect(BottlesConfig::instance(), &BottlesConfig::bottles_deleted, this, [this](const QString& bottle) {
        if (bottle == m_bottle)
            close();
    });
}

BottlesConfigView::~BottlesConfigView() {
    saveEditedParameters();
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
            [this](Setting setting) { m_undo->offer(SettingTable::label(setting)); });
    connect(m_settings, &BottleSettings::changed, this, [this] {
        if (!m_settings->canUndo())
            m_undo->withdraw();
    });
    connect(m_undo, &UndoBar::undone, m_settings, &BottleSettings::undo);
    connect(m_settings, &BottleSettings::runnerChanged, this, &BottlesConfigView::checkDriver);
    connect(m_basic, &BasicPage::chosen, this, &BottlesConfigView::choose);
    connect(m_programs, &BottlePrograms::changed, this, &BottlesConfigView::refreshPrograms);
    connect(m_programs, &BottlePrograms::failed, this, &BottlesConfigView::showError);
    connect(m_run, &DebugRun::line, m_logs, &DebuggingLogsFrame::append);
    connect(m_run, &DebugRun::failed, this, &BottlesConfigView::showError);
    connect(m_run, &DebugRun::ended, this, [this](const QString& errorText) {
        if (!errorText.isEmpty())
            m_logs->append(errorText, true);
        refreshRun();
    });
    refreshPrograms();
    refreshRun();
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
    auto* upper = new QWidget;
    auto* pages = new QVBoxLayout(upper);
    pages->setContentsMargins(0, 0, 0, 0);
    pages->setSpacing(Tokens::Space12);
    pages->addWidget(makeHead());
    pages->addWidget(m_pages, 1);
    m_basic = new BasicPage(m_settings);
    addPage(Basic, tr("Basic Configuration"), m_basic);
    m_params = new WineParamsCfgWidget;
    addPage(WineParameter, tr("Wine Parameter"), m_params);
    addPage(DebuggingTools, tr("Debugging Tools"), makeToolsPage());

    m_logs = new DebuggingLogsFrame;
    m_logs->hide();
    connect(m_logs, &DebuggingLogsFrame::folderRequested, this, &BottlesConfigView::slotsOpenLogsDir);
    m_splitter = new QSplitter(Qt::Vertical);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(upper);
    m_splitter->addWidget(m_logs);
    m_splitter->setStretchFactor(0, 1);
    upper->setMinimumHeight(LogHeight);
    m_logs->setMinimumHeight(LogHeight / 2);

    auto* side = new QWidget;
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space12, Tokens::Space16);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(makeFoot());
    return side;
}

QWidget* BottlesConfigView::makeHead() {
    auto* hint =
        new Label(tr("Setting container to improve the success rate of the application, you can debug "
                     "and preview multiple times."),
                  Label::Secondary);
    hint->setWordWrap(true);
    m_search = new SearchEdit;
    m_search->setPlaceholderText(tr("Search settings"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setFixedWidth(200);
    connect(m_search, &QLineEdit::textChanged, this, &BottlesConfigView::search);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        onConfigurePageToggled(Basic);
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    });

    auto* titles = new QHBoxLayout;
    titles->addWidget(new Label(tr("Advanced Debugging Tools"), Label::Heading), 1);
    titles->addWidget(m_search);
    m_buttonRow = new QHBoxLayout;
    m_buttonRow->setSpacing(Tokens::Space8);
    m_buttonRow->addStretch();
    auto* head = new QWidget;
    auto* layout = new QVBoxLayout(head);
    layout->setContentsMargins(Tokens::RingExtent, Tokens::RingExtent, Tokens::Space12, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addLayout(titles);
    layout->addWidget(hint);
    layout->addLayout(m_buttonRow);
    connect(m_buttonBox, &QButtonGroup::idClicked, this, &BottlesConfigView::onConfigurePageToggled);
    return head;
}

void BottlesConfigView::addPage(Page page, const QString& title, QWidget* content) {
    auto* button = new QPushButton(title);
    button->setCheckable(true);
    button->setChecked(m_pages->count() == 0);
    setButtonKind(button, ButtonKind::Quiet);
    m_buttonBox->addButton(button, page);
    m_buttonRow->insertWidget(m_buttonRow->count() - 1, button);
    content->setProperty("page", page);
    m_pages->addWidget(content);
}

QWidget* BottlesConfigView::makeToolsPage() {
    constexpr int Columns = 3;
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    grid->setSpacing(Tokens::Space12);
    const auto addButton = [grid](const QString& text, int row, int column) {
        auto* button = new QPushButton(text);
        button->setMinimumHeight(Tokens::RowHeight);
        grid->addWidget(button, row, column);
        return button;
    };
    grid->addWidget(new Label(tr("Container Operation"), Label::Strong), 0, 0, 1, Columns);
    int count = 0;
    for (const BottleCommand& command : BottleCommands::all()) {
        QPushButton* button = addButton(command.text(), 1 + count / Columns, count % Columns);
        connect(button, &QPushButton::clicked, this, [this, run = command.run] { run(currentRef()); });
        if (command.needsProgram)
            connect(m_programs, &BottlePrograms::changed, button,
                    [this, button] { button->setEnabled(m_programs->list().currentEntry()); });
        ++count;
    }
    const int below = 1 + (count + Columns - 1) / Columns;
    grid->addWidget(new Label(tr("Other"), Label::Strong), below, 0, 1, Columns);
    connect(addButton(tr("Importing the registry"), below + 1, 0), &QPushButton::clicked, this,
            &BottlesConfigView::slotsimportRegs);
    for (int column = 0; column < Columns; ++column)
        grid->setColumnStretch(column, 1);
    grid->setRowStretch(below + 2, 1);
    return page;
}

QWidget* BottlesConfigView::makeFoot() {
    m_undo = new UndoBar;
    m_toggleLogs = new IconButton("fenk-menu", tr("Toggle logs"));
    m_toggleLogs->setObjectName("cxb_toggle_logs_btn");
    m_toggleLogs->setCheckable(true);
    connect(m_toggleLogs, &QToolButton::clicked, this, &BottlesConfigView::slotstoggleLogsView);
    m_debug = new SuggestButton(tr("Debugging Runs"));
    m_debug->setObjectName("debug_btn");
    connect(m_debug, &QPushButton::clicked, this, [this] { startRun(false); });
    m_stop = new QPushButton(tr("Stop Debugging"));
    m_stop->setObjectName("stop_debug_btn");
    connect(m_stop, &QPushButton::clicked, m_run, &DebugRun::stop);
    auto* foot = new QWidget;
    auto* layout = new QHBoxLayout(foot);
    layout->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_toggleLogs);
    layout->addWidget(m_undo, 1);
    layout->addWidget(m_debug);
    layout->addWidget(m_stop);
    return foot;
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
    m_debug->setEnabled(entry);
    m_debug->setToolTip(entry ? QString() : tr("There is no application in this container"));
    showParameters();
    setTitle(entry ? tr("Configuration of %1").arg(entry->name()) : tr("Container Configuration"));
}

void BottlesConfigView::refreshRun() {
    // One button takes the place of the other, and the focus with it.
    const bool hadFocus = m_debug->hasFocus() || m_stop->hasFocus();
    QPushButton* shown = m_run->isRunning() ? m_stop : m_debug;
    shown->show();
    if (hadFocus)
        shown->setFocus();
    (m_run->isRunning() ? m_debug : m_stop)->hide();
}

ProgramRef BottlesConfigView::currentRef() const {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    return {m_bottle, entry ? entry->id : QString()};
}

void BottlesConfigView::startRun(bool inTerminal) {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    if (!entry) {
        qWarning("Entry not found");
        return;
    }
    if (m_run->isRunning())
        return;
    m_logs->clear();
    showLogs();
    m_debug->setEnabled(false);
    saveParameters(m_bottle, *m_parameters.value(entry->id), this,
                   [this, id = entry->id, inTerminal](const BusResult& result) {
                       m_debug->setEnabled(m_programs->list().currentEntry());
                       if (result.ok)
                           run(id, inTerminal);
                       else
                           showError(tr("The parameters could not be saved: %1").arg(result.errorText()));
                   });
}

/// Once its parameters are saved, since the launch script reads them from the bottle.
void BottlesConfigView::run(const QString& id, bool inTerminal) {
    const int index = m_programs->list().indexOf(id);
    if (index < 0 || m_run->isRunning())
        return;
    const EntryParameters& parameters = *m_parameters.value(id);
    const QString channels =
        LogChannels::environment(parameters.channels, m_settings->values().text(Setting::Runner));
    m_run->start({m_bottle,
                  m_settings->record(),
                  m_programs->list().entries()[index],
                  {channels},
                  parameters.logPath,
                  inTerminal});
}

/// The parameters of the programs that are there; what was set for one stays while the window is open.
void BottlesConfigView::showParameters() {
    for (const ProgramEntry& entry : m_programs->list().entries()) {
        std::shared_ptr<EntryParameters>& parameters = m_parameters[entry.id];
        if (!parameters)
            parameters = std::make_shared<EntryParameters>(entry.recordWithId());
    }
    m_params->setEntry(m_parameters.value(currentRef().uuid));
}

/// What was not edited may have been changed elsewhere, and stays.
void BottlesConfigView::saveEditedParameters() {
    if (!m_programs)
        return;
    for (const ProgramEntry& entry : m_programs->list().entries()) {
        const auto parameters = m_parameters.value(entry.id);
        if (parameters && parameters->toRecord() != EntryParameters(entry.recordWithId()).toRecord())
            saveParameters(m_bottle, *parameters);
    }
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
    for (int i = 0; i < m_pages->count(); ++i) {
        if (m_pages->widget(i)->property("page").toInt() != page)
            continue;
        m_pages->setCurrentIndex(i);
        m_buttonBox->button(page)->setChecked(true);
    }
    m_params->refreshTranslators();
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
    auto* menu = new QMenu(this);
    menu->setObjectName("entry_menu");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    using Self = BottlesConfigView;
    menu->addAction(tr("Run in terminal"), this, &Self::onOpenInTerminalActionTriggered)
        ->setEnabled(!m_run->isRunning());
    menu->addAction(tr("Open folder of app"), this, &Self::onOpenFolderActionTriggered);
    menu->addAction(tr("Internet Settings"), this, &Self::onOpenInternalOptsTriggered);
    QMenu* tools = menu->addMenu(tr("Frequently Used Functions"));
    for (const BottleCommand& command : BottleCommands::all())
        tools->addAction(command.text(), this, [this, run = command.run] { run(currentRef()); });
    if (m_programs->list().entries().size() > 1) {
        menu->addSeparator();
        setDestructive(menu->addAction(tr("Delete"), this, &Self::onDeleteActionTriggered));
    }
    menu->popup(at);
}

void BottlesConfigView::onOpenInTerminalActionTriggered() {
    startRun(true);
}

void BottlesConfigView::onOpenFolderActionTriggered() {
    BottleUtils::openProgramFolder(m_bottle, currentRef().uuid);
}

void BottlesConfigView::onOpenInternalOptsTriggered() {
    BottleTasks::openInternetOptions(m_bottle);
}

void BottlesConfigView::onDeleteActionTriggered() {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    if (!entry) {
        qWarning("Entry not found");
        return;
    }
    auto* question = new Dialog(
        tr("Delete"),
        tr("%1 is taken off the list of applications. Its files stay in the container.").arg(entry->name()),
        this);
    question->setObjectName("delete_entry_question");
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->addButton(tr("Cancel"), true);
    const int yes = question->addButton(tr("Delete"), false, Dialog::ButtonWarning);
    connect(question, &QDialog::finished, m_programs,
            [programs = m_programs, id = entry->id, yes](int answer) {
                if (answer == yes)
                    programs->remove(id);
            });
    question->open();
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
    m_toggleLogs->setChecked(shows);
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
