#pragma once

#include <QObject>
#include <functional>

class BottleSettings;
class BottleTable;
class DllOverridePage;
class FontReplacementPage;
class UndoBar;

/// The pages of DLL overrides and fonts in the configuration window, whose lists are read before the bottle's
/// record: first the fonts, then the overrides, whose answer begins the rest. Creates the pages; the window
/// owns them.
class TablePages : public QObject {
    Q_OBJECT
public:
    TablePages(BottleSettings* settings, QObject* parent);

    DllOverridePage* dlls() const { return m_dlls; }
    FontReplacementPage* fonts() const { return m_fonts; }
    /// Each step in a table is offered there to be taken back.
    void offerUndo(UndoBar* bar);

private:
    void read(const std::function<void()>& then);
    void finish();
    QList<BottleTable*> tables() const;

    FontReplacementPage* m_fonts;
    DllOverridePage* m_dlls;
    std::function<void()> m_then;
};
