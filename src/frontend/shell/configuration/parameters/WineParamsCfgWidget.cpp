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
#include "fenk/controls/SettingRow.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/parameters/EmulatorComboBox.h"
#include "shell/configuration/parameters/EnvironmentText.h"
#include "shell/configuration/parameters/LogFileEdit.h"
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
      m_arguments(makeEdit("params_arguments", tr("Please enter startup parameters"))),
      m_channels(named(new WineChannerCombobox, "params_channels")),
      m_environment(makeEdit("params_environment", tr("Please enter the environment variable"))),
      m_emulators(named(new EmulatorComboBox, "params_emulator")),
      m_emulatorRow(new SettingRow(tr("Translator"), tr("This machine has no translator"), m_emulators)),
      m_logFile(named(new LogFileEdit, "params_log_file")) {
    m_channels->lineEdit()->setPlaceholderText(tr("Please select the log channel"));
    m_arguments->setAccessibleName(tr("Startup parameter"));
    m_environment->setAccessibleName(tr("Environment Variables"));
    m_texts = {{m_arguments, &EntryParameters::arguments},
               {m_channels, &EntryParameters::channels},
               {m_environment, &EntryParameters::environment},
               {m_logFile, &EntryParameters::logPath}};
    makeCard();
    connectControls();
    showTranslators(EmulatorsInfo(), true);
    setEntry(nullptr);
}

void WineParamsCfgWidget::makeCard() {
    auto* card = new Card;
    card->addRow(new SettingRow(tr("Startup parameter"), {}, m_arguments));
    card->addRow(new SettingRow(tr("Wine Log Channel"), tr("What a debugging run logs"), m_channels));
    card->addRow(new SettingRow(tr("Environment Variables"),
                                tr("NAME=value, separated by blanks; quotes keep blanks in a value"),
                                m_environment));
    card->addRow(m_emulatorRow);
    card->addRow(new SettingRow(tr("Log files"), tr("Where a debugging run is logged"), m_logFile));
    auto* content = new QWidget;
    auto* rows = new QVBoxLayout(content);
    rows->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    rows->addWidget(card);
    rows->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PageArea::around(content));
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
}

void WineParamsCfgWidget::onTextChanged(const QString& text) {
    if (const Text member = m_texts.value(sender()); m_entry && member)
        (*m_entry).*member = text;
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
    m_emulatorRow->setTip(!asked ? tr("The translators could not be read; open this page again to retry")
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
