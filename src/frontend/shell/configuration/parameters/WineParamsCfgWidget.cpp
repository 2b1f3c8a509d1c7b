#include "shell/configuration/parameters/WineParamsCfgWidget.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "backend/BottleLogs.h"
#include "backend/BottlesConfig.h"
#include "fenk/controls/Card.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/parameters/EmulatorComboBox.h"
#include "shell/configuration/parameters/EnvironmentText.h"
#include "shell/configuration/parameters/LogFileEdit.h"
#include "shell/configuration/parameters/ParameterRow.h"
#include "shell/configuration/parameters/WineChannerCombobox.h"
#include "widgets/PageArea.h"

using namespace Fenk;

namespace {

constexpr int ControlWidth = 320;
constexpr int LongestQuote = 40;  ///< characters of a faulty text that a message repeats

template <class Control>
Control* named(Control* control, const char* objectName) {
    control->setObjectName(objectName);
    control->setFixedWidth(ControlWidth);
    return control;
}

LineEdit* makeEdit(const char* objectName, const QString& placeholder) {
    auto* edit = named(new LineEdit, objectName);
    edit->setPlaceholderText(placeholder);
    return edit;
}

template <class Control>
void fill(Control* control, void (Control::*set)(const QString&), const QString& text) {
    const QSignalBlocker quiet(control);
    (control->*set)(text);
}

}  // namespace

WineParamsCfgWidget::WineParamsCfgWidget(QWidget* parent)
    : QWidget(parent),
      m_card(new Card),
      m_arguments(makeEdit("params_arguments", tr("Please enter startup parameters"))),
      m_channels(named(new WineChannerCombobox, "params_channels")),
      m_environment(makeEdit("params_environment", tr("Please enter the environment variable"))),
      m_emulators(named(new EmulatorComboBox, "params_emulator")),
      m_logFile(named(new LogFileEdit, "params_log_file")) {
    m_channels->lineEdit()->setPlaceholderText(tr("Please select the log channel"));
    // The names of the inner edits; the rows name the controls.
    m_arguments->setAccessibleName(tr("Startup parameter"));
    m_environment->setAccessibleName(tr("Environment Variables"));
    m_texts = {{m_arguments, &EntryParameters::arguments},
               {m_channels, &EntryParameters::channels},
               {m_environment, &EntryParameters::environment},
               {m_logFile, &EntryParameters::logPath}};
    makeRows();
    connectControls();
    showTranslators(EmulatorsInfo(), true);
    setEntry(nullptr);
}

void WineParamsCfgWidget::makeRows() {
    const auto add = [this](QWidget* control, const QString& label, const QString& tip, const QString& help) {
        auto* row = new ParameterRow(label, tip, help, control);
        connect(row, &ParameterRow::resetRequested, this, [this, control] { showText(control, {}); });
        m_rowOf.insert(control, row);
        m_rows.append(row);
    };
    add(m_arguments, tr("Startup parameter"), {},
        tr("What the program gets on its command line, as after its name in a terminal."));
    add(m_channels, tr("Wine Log Channel"), tr("What a debugging run logs"),
        tr("The parts of Wine that write into the log of a debugging run; empty stands for the usual ones."));
    add(m_environment, tr("Environment Variables"),
        tr("NAME=value, separated by blanks; quotes keep blanks in a value"),
        tr("Variables that the program and Wine find in their environment."));
    add(m_emulators, tr("Translator"), tr("This machine has no translator"),
        tr("What runs programs for x86 processors on this machine."));
    add(m_logFile, tr("Log files"), tr("Where a debugging run is logged"),
        tr("The file that gets the log of a debugging run; empty stands for one in the container."));
    auto* content = new QWidget;
    auto* lines = new QVBoxLayout(content);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    for (ParameterRow* row : qAsConst(m_rows))
        lines->addWidget(row);
    m_card->addRow(content);
    auto* page = new QWidget;
    auto* rows = new QVBoxLayout(page);
    rows->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    rows->addWidget(m_card);
    rows->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PageArea::around(page));
    filter({});
}

int WineParamsCfgWidget::filter(const QString& text) {
    int shown = 0;
    for (ParameterRow* row : qAsConst(m_rows)) {
        const bool fits = text.isEmpty() || row->matches(text);
        row->setVisible(fits);
        row->setSeparated(fits && shown > 0);
        shown += fits;
    }
    m_card->setVisible(shown > 0);
    return shown;
}

void WineParamsCfgWidget::connectControls() {
    connect(m_arguments, &LineEdit::textChanged, this, &WineParamsCfgWidget::onTextChanged);
    connect(m_channels, &WineChannerCombobox::textChanged, this, &WineParamsCfgWidget::onTextChanged);
    connect(m_environment, &LineEdit::textChanged, this, &WineParamsCfgWidget::onTextChanged);
    connect(m_environment, &LineEdit::editingFinished, this, &WineParamsCfgWidget::checkEnvironment);
    connect(m_logFile, &LogFileEdit::textChanged, this, &WineParamsCfgWidget::onTextChanged);
    connect(m_logFile, &LogFileEdit::buttonClicked, this, &WineParamsCfgWidget::onSetLogSaveDir);
    connect(m_emulators, qOverload<int>(&QComboBox::activated), this,
            &WineParamsCfgWidget::onEmulatorChanged);
}

void WineParamsCfgWidget::setBottle(const QString& name, const QString& path) {
    const bool isOther = m_bottle != name;
    m_bottle = name;
    m_logFile->setDefaultDirectory(path.isEmpty() ? QString() : BottleLogs::directory(path));
    if (isOther)
        showTranslators(EmulatorsInfo(), true);
    if (isVisible())
        refreshTranslators();
}

void WineParamsCfgWidget::setEntry(std::shared_ptr<EntryParameters> entry) {
    m_entry = std::move(entry);
    const EntryParameters shown = m_entry ? *m_entry : EntryParameters();
    fill(m_arguments, &LineEdit::setText, shown.arguments);
    fill(m_channels, &WineChannerCombobox::setChannels, shown.channels);
    fill(m_environment, &LineEdit::setText, shown.environment);
    fill(m_logFile, &LogFileEdit::setPath, shown.logPath);
    for (LineEdit* edit : {m_arguments, m_environment})
        edit->lineEdit()->home(false);  // of a long text the beginning shows
    for (QWidget* control : {static_cast<QWidget*>(m_arguments), static_cast<QWidget*>(m_channels),
                             static_cast<QWidget*>(m_environment), static_cast<QWidget*>(m_logFile)})
        control->setEnabled(m_entry != nullptr);
    checkEnvironment();
    refreshResets();
}

/// As if the user had typed it.
void WineParamsCfgWidget::showText(QWidget* control, const QString& text) {
    if (auto* edit = qobject_cast<LineEdit*>(control))
        edit->setText(text);
    else if (control == m_channels)
        m_channels->setChannels(text);
    else if (control == m_logFile)
        m_logFile->setPath(text);
}

void WineParamsCfgWidget::refreshResets() {
    for (auto it = m_texts.begin(); it != m_texts.end(); ++it)
        m_rowOf.value(it.key())->setResettable(m_entry && !((*m_entry).*it.value()).isEmpty());
}

void WineParamsCfgWidget::onTextChanged(const QString& text) {
    if (const Text member = m_texts.value(sender()); m_entry && member)
        (*m_entry).*member = text;
    refreshResets();
}

void WineParamsCfgWidget::checkEnvironment() {
    const EnvironmentText::Parsed parsed = m_entry && m_entry->isEnvironmentEdited()
                                               ? EnvironmentText::parse(m_entry->environment)
                                               : EnvironmentText::Parsed();
    if (!parsed.leftOut.isEmpty())
        m_environment->showAlertMessage(
            tr("“%1” is not NAME=value and is not used").arg(parsed.leftOut.left(LongestQuote)), 0);
    else if (parsed.openQuote)
        m_environment->showAlertMessage(tr("The last value has no closing quote"), 0);
    else if (parsed.error)
        m_environment->showAlertMessage(
            tr("A name has only letters, digits and “_”, and does not begin with a digit"), 0);
    else
        m_environment->hideAlertMessage();
}

void WineParamsCfgWidget::onSetLogSaveDir() {
    m_logFile->choose();
}

void WineParamsCfgWidget::refreshTranslators() {
    const int question = ++m_questions;
    BottlesConfig::instance()->watchEmulators(m_bottle, this, [this, question](const BusResult& result) {
        if (question != m_questions)
            return;
        if (!result.ok)
            qWarning("Failed to fetch emulators info.");
        showTranslators(EmulatorsInfo::fromObject(result.object()), result.ok);
    });
}

void WineParamsCfgWidget::showTranslators(const EmulatorsInfo& translators, bool asked) {
    m_emulators->fill(translators);
    m_emulators->setEnabled(hasTranslators());
    m_rowOf.value(m_emulators)
        ->setTip(!asked             ? tr("The translators could not be read; open this page again to retry")
                 : hasTranslators() ? tr("Runs x86 programs on this machine")
                                    : tr("This machine has no translator"));
}

bool WineParamsCfgWidget::hasTranslators() const {
    return m_emulators->count() > 0;
}

void WineParamsCfgWidget::onEmulatorChanged() {
    ++m_questions;  // an answer from before would show the former one
    const QString name = m_emulators->currentData().toString();
    BottlesConfig::instance()->setEmulator(m_bottle, name, this, [this, name](const BusResult& answer) {
        if (answer.ok || answer.timedOut)
            return;
        qWarning().noquote() << "cannot set the translator" << name << "of" << m_bottle
                             << answer.errorMessage;
        FloatingMessage::show(this, Theme::icon("fenk-error"),
                              tr("The translator could not be changed: %1").arg(answer.errorText()));
        refreshTranslators();
    });
}

void WineParamsCfgWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous() && !m_bottle.isEmpty())
        refreshTranslators();
}
