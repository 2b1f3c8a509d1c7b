#pragma once

#include <QHash>
#include <QWidget>
#include <memory>

#include "shell/configuration/parameters/EntryParameters.h"
#include "shell/configuration/rules/SearchedPage.h"

class EmulatorComboBox;
struct EmulatorsInfo;
class LogFileEdit;
class ParameterRow;
class WineChannerCombobox;
namespace Fenk {
class Card;
class LineEdit;
}  // namespace Fenk

/// The page "Wine Parameter": shows and edits the parameters of the window's current entry, which the window
/// saves, and the bottle's translator, which is set at once. Never waits for the service.
class WineParamsCfgWidget : public QWidget, public SearchedPage {
    Q_OBJECT
public:
    explicit WineParamsCfgWidget(QWidget* parent = nullptr);

    /// The bottle and its directory, which may be empty. Asks for the translators if the page is visible.
    void setBottle(const QString& name, const QString& path);
    /// Shows the entry and writes each change into it. None: there is nothing to edit.
    void setEntry(std::shared_ptr<EntryParameters> entry);

    /// Asks for the translators of machine and bottle; also done whenever the page becomes visible.
    void refreshTranslators();
    /// Whether the machine has translators, as far as was asked.
    bool hasTranslators() const;

    int filter(const QString& text) override;

public Q_SLOTS:
    void onTextChanged(const QString& text);
    void onSetLogSaveDir();
    void onEmulatorChanged();

protected:
    void showEvent(QShowEvent* event) override;

private:
    using Text = QString EntryParameters::*;

    void makeRows();
    void refreshResets();
    void showText(QWidget* control, const QString& text);
    void connectControls();
    void checkEnvironment();
    void showTranslators(const EmulatorsInfo& translators, bool asked);

    std::shared_ptr<EntryParameters> m_entry;
    QString m_bottle;
    int m_questions = 0;            ///< about translators; only the last one's answer counts
    QHash<QObject*, Text> m_texts;  ///< what each control edits
    QHash<QObject*, ParameterRow*> m_rowOf;
    QVector<ParameterRow*> m_rows;  ///< in the order of the page
    Fenk::Card* m_card;
    Fenk::LineEdit* m_arguments;
    WineChannerCombobox* m_channels;
    Fenk::LineEdit* m_environment;
    EmulatorComboBox* m_emulators;
    LogFileEdit* m_logFile;
};
