#include "shell/library/OrphanQuestion.h"

#include <QCoreApplication>

#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"
#include "programs/OrphanedBottles.h"
#include "programs/Program.h"
#include "shell/library/RemovalQuestion.h"

namespace {

struct Question {
    Q_DECLARE_TR_FUNCTIONS(OrphanQuestion)
};

}  // namespace

QString OrphanQuestion::textOf(const Program& program, const OrphanedBottle& bottle) {
    const QString text =
        bottle.isBeingKept
            ? Question::tr(
                  "The container of %1 is being made your own: it gets copies of what it shared with the "
                  "package %2. This can take some minutes.")
        : bottle.lostPrograms.contains(program.ref.uuid)
            ? Question::tr(
                  "%1 cannot be started: its files belonged to the package %2, which has been "
                  "removed. Install the package again, or remove what is left of the program.")
            : Question::tr(
                  "The package %2 that %1 came with has been removed. The program can still be "
                  "started, but it is not updated any more.");
    return text.arg(program.name, bottle.package);
}

void OrphanQuestion::ask(const Program& program, const OrphanedBottle& bottle, QWidget* over) {
    // A kept container lets go of the package, whose files would be lost for good.
    const bool mayKeep = bottle.lostPrograms.isEmpty();
    QString what = Question::tr("\"Remove\" deletes its container, with what you have made in it.");
    if (mayKeep)
        what = Question::tr(
            "\"Remove\" deletes its container, with what you have made in it. \"Keep as My Own\" makes it a "
            "container "
            "like any other: the package, when it is installed again, gets a new one.");
    auto* dialog =
        new Fenk::Dialog(Question::tr("Package Removed"), textOf(program, bottle) + "\n\n" + what, over);
    dialog->setObjectName("orphan_question");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFixedWidth(Fenk::Tokens::DialogMaxWidth);
    dialog->addButton(Question::tr("Cancel"), true);
    const int remove = dialog->addButton(Question::tr("Remove…"));
    const int keep = mayKeep ? dialog->addButton(Question::tr("Keep as My Own")) : -1;
    QObject::connect(dialog, &Fenk::Dialog::buttonClicked, over, [program, remove, keep, over](int index) {
        if (index == remove)
            RemovalQuestion::askForBottle(program, over);
        else if (keep >= 0 && index == keep)
            OrphanedBottles::instance()->keep(program.ref.bottle);
    });
    dialog->open();
}
