#pragma once

#include "fenk/window/AbstractDialog.h"
#include "shell/configuration/rules/SettingValues.h"

class AppEntryButton;
class BasicPage;
class BottlePrograms;
class BottleSettings;
class ComponentsPage;
class DriverCheck;
class ColumnSlide;
class ConfigFoot;
class ConfigPages;
class ConfigStates;
class DebuggingLogsFrame;
class EntriesColumn;
class HintNavigator;
class ProgramFindings;
class ProgramTrials;
class QSplitter;
class TablePages;
class ToolsPage;
class WineParamsCfgWidget;

/// The window in which a user tunes one bottle and tries its programs: the programs on the left, pages of
/// settings on the right, the log of debugging runs below them. Every change goes to the service at once; the
/// window holds no configuration of its own. Closes when its bottle is deleted. Deletes itself when it is
/// closed; programs that it has started go on. GUI thread; waits for nothing.
class BottlesConfigView : public Fenk::AbstractDialog {
    Q_OBJECT
public:
    /// The pages by the index that links name.
    enum Page { Basic, WineParameter, DllOverride, FontReplacement, Components, DebuggingTools };

    explicit BottlesConfigView(QWidget* parent = nullptr);
    ~BottlesConfigView() override;

    /// The open window of the bottle, or null.
    static BottlesConfigView* openWindowOf(const QString& bottle);

    void loadBottle(const QString& bottle);
    const QString& bottle() const { return m_bottle; }
    /// Shows the loading view until it is taken back, and then reads the bottle anew.
    void setLoading(bool loading);
    void selectProgram(const QString& exePath);
    void selectProgramById(const QString& id);
    void showLogs();
    /// The window is opened because a launch has failed: the log pane shows its log and what may be tried.
    void explainFailure();

Q_SIGNALS:
    /// The loading view has gone: the bottle is about to be shown, or it is shown that it cannot be read.
    void bottlesLoaded();
    /// The user wants the basic settings as a new bottle has them.
    void resetBottles();
    /// The user wants to make a package of the bottle.
    void startPackageBottle(const QString& bottleName);
    void closed();

public Q_SLOTS:
    void onConfigurePageToggled(int page);
    void onAppEntryBtnClicked(AppEntryButton* button);
    void onAppEntryBtnRightClicked(AppEntryButton* button);
    void changeSelectedIndex(AppEntryButton* button);
    void changeSelectedIndex(int index);
    void syncCurrentAppEntry();
    void onOpenInTerminalActionTriggered();
    void onOpenFolderActionTriggered();
    void onDeleteActionTriggered();
    void onOpenInternalOptsTriggered();
    void slotsOpenLogsDir();
    void slotsimportRegs();
    void slotstoggleLogsView();
    void slotsAppendLogs(const QString& text);
    void slotsHandleLogsAnchorClicked(const QUrl& anchor);
    void onAddEntryButtonClicked();
    void slotsStopInstallingDeps();
    void slotsUpdateMemOptimizedSwitchButtonStates(int index);
    void openBottlesDebugTerminal();
    void onNtSyncSwitchBtnClicked();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    static constexpr int LogHeight = 260;  ///< pixels, until the user changes it

    QWidget* makeContent();
    QWidget* makeRightSide();
    void connectBottle();
    void refreshState();
    void refreshPrograms();
    void showEntryMenu(AppEntryButton* button, const QPoint& at);
    void startRun(bool inTerminal);
    void checkDriver();
    void chooseFile();
    void choose(Setting setting, const QVariant& value);
    void connectTools();
    void askToReset();
    void offerPackaging();
    void openPackaging();
    void askAboutPrograms(Setting component, const QStringList& programs);
    void showError(const QString& errorText);

    QString m_bottle;
    BottleSettings* m_settings = nullptr;
    BottlePrograms* m_programs = nullptr;
    ProgramTrials* m_trials = nullptr;
    DriverCheck* m_driverCheck;
    bool m_isLoading = false;  ///< the launch that has opened the window says so
    bool m_hasLoaded = false;
    bool m_showsLoading = false;
    bool m_hasShownLogs = false;

    ConfigStates* m_states = nullptr;
    EntriesColumn* m_entries = nullptr;
    ColumnSlide* m_slide = nullptr;
    ConfigPages* m_pages = nullptr;
    BasicPage* m_basic = nullptr;
    WineParamsCfgWidget* m_params = nullptr;
    TablePages* m_tables = nullptr;
    ToolsPage* m_tools = nullptr;
    ComponentsPage* m_components = nullptr;
    QSplitter* m_splitter = nullptr;
    DebuggingLogsFrame* m_logs = nullptr;
    ProgramFindings* m_findings = nullptr;
    HintNavigator* m_hintLinks = nullptr;
    ConfigFoot* m_foot = nullptr;
};
