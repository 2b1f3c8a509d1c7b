#pragma once

#include <QMenu>

class BottlePrograms;

/// The menu of the current program: what runs and shows it, the tools of its bottle, and the way to take it
/// off the list, unless it is the last one. Deletes itself when it is closed.
class EntryMenu : public QMenu {
    Q_OBJECT
public:
    EntryMenu(BottlePrograms* programs, bool canRun, QWidget* parent);

Q_SIGNALS:
    void terminalRequested();
    void folderRequested();
    void internetSettingsRequested();
    void deleteRequested();
};

/// Asks before the current program is taken off the list; its files stay.
void askToDeleteEntry(BottlePrograms* programs, QWidget* over);
