#include "shell/configuration/page/EntryMenu.h"

#include <QDebug>

#include "fenk/style/WidgetLook.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/page/BottleCommands.h"
#include "shell/configuration/page/BottlePrograms.h"

EntryMenu::EntryMenu(BottlePrograms* programs, bool canRun, QWidget* parent) : QMenu(parent) {
    setObjectName("entry_menu");
    setAttribute(Qt::WA_DeleteOnClose);
    addAction(tr("Run in terminal"), this, &EntryMenu::terminalRequested)->setEnabled(canRun);
    addAction(tr("Open folder of app"), this, &EntryMenu::folderRequested);
    addAction(tr("Internet Settings"), this, &EntryMenu::internetSettingsRequested);
    QMenu* tools = addMenu(tr("Frequently Used Functions"));
    for (const BottleCommand& command : BottleCommands::all())
        tools->addAction(command.text(), programs, [programs, &command, program = programs->currentRef()] {
            command.start(programs, program);
        });
    if (programs->list().entries().size() > 1) {
        addSeparator();
        Fenk::setDestructive(addAction(tr("Delete"), this, &EntryMenu::deleteRequested));
    }
}

void askToDeleteEntry(BottlePrograms* programs, QWidget* over) {
    const ProgramEntry* entry = programs->list().currentEntry();
    if (!entry) {
        qWarning("Entry not found");
        return;
    }
    auto* question = new Fenk::Dialog(
        EntryMenu::tr("Delete"),
        EntryMenu::tr("%1 is taken off the list of applications. Its files stay in the container.")
            .arg(entry->name()),
        over);
    question->setObjectName("delete_entry_question");
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->addButton(EntryMenu::tr("Cancel"), true);
    const int yes = question->addButton(EntryMenu::tr("Delete"), false, Fenk::Dialog::ButtonWarning);
    QObject::connect(question, &QDialog::finished, programs, [programs, id = entry->id, yes](int answer) {
        if (answer == yes)
            programs->remove(id);
    });
    question->open();
}
