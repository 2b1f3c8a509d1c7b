#include "shell/library/RemovalQuestion.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <optional>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/TextUtils.h"
#include "backend/WindowsPath.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/DirectorySize.h"
#include "programs/Program.h"
#include "programs/ProgramRuns.h"
#include "programs/ProgramStarts.h"

namespace {

constexpr int LongestNameInTitle = 24;

/// What is removed: a program, the last one with its bottle, or a bottle whatever is in it.
enum class What { Program, LastProgram, Bottle };

struct Question {
    Q_DECLARE_TR_FUNCTIONS(RemovalQuestion)
};

Fenk::Label* line(const QString& text, Fenk::Label::Kind kind) {
    auto* label = new Fenk::Label(text, kind);
    label->setAlignment(Qt::AlignCenter);
    label->setElided(true);
    return label;
}

Fenk::Label* paragraph(const QString& text, const char* name) {
    auto* label = line(text, Fenk::Label::Small);
    label->setObjectName(name);
    label->setElided(false);
    label->setWordWrap(true);
    return label;
}

/// Whether the program's file exists and lies outside its bottle.
bool isOutside(const QString& path, const QString& bottlePath) {
    const QString file = WindowsPath::isWindowsPath(path) ? WindowsPath::toUnix(bottlePath, path) : path;
    const QString real = QFileInfo(file).canonicalFilePath();
    return !real.isEmpty() && !real.startsWith(QFileInfo(bottlePath).canonicalFilePath() + '/');
}

/// The same, before the bottle's directory is known.
bool mayBeOutside(const QString& path) {
    return !path.startsWith(QLatin1String("C:"), Qt::CaseInsensitive);
}

/// Returns nothing, and removes nothing, if the bottle would be left without a program and only that is to be
/// removed. Waits for the service.
std::optional<BottleUtils::Removal> tryRemove(const ProgramRef& ref, What what) {
    if (what == What::Bottle)
        return BottleUtils::deleteBottle(ref.bottle);
    if (what == What::Program) {
        const QJsonObject programs = BottleUtils::bottlePrograms(ref.bottle);
        if (!programs.contains(ref.uuid))
            return BottleUtils::Removal::ProgramRefused;  // empty also when the call has timed out
        if (programs.size() == 1)
            return std::nullopt;
    }
    return BottleUtils::deleteEntry(ref.bottle, ref.uuid, what == What::LastProgram);
}

QString errorTextOf(BottleUtils::Removal removal, What what, const QString& name) {
    if (what == What::Bottle && removal != BottleUtils::Removal::Done)
        removal = BottleUtils::Removal::ProgramRefused;
    switch (removal) {
        case BottleUtils::Removal::ProgramRefused:
            return Question::tr("%1 could not be removed. It is still there.").arg(name);
        case BottleUtils::Removal::BottleRefused:
            return Question::tr("%1 is removed, but its container could not be deleted.").arg(name);
        default:
            return {};
    }
}

/// Some translations have the program's name in the title.
QString titleOf(bool withBottle, const QString& name) {
    const QString title = withBottle ? Question::tr("Important Information", "uninstall")
                                     : Question::tr("Important Information", "delete");
    return QString(title).replace(QLatin1String("%1"), name.size() <= LongestNameInTitle
                                                           ? name
                                                           : name.left(LongestNameInTitle) + QChar(0x2026));
}

void showSize(Fenk::Label* label, const QString& directory, int programs) {
    label->setToolTip(Fenk::plainToolTip(directory));
    inBackground(
        label, [directory] { return DirectorySize::of(directory); },
        [label, programs](qint64 bytes) {
            const QString text =
                programs > 1
                    ? Question::tr("The container (%1) will be deleted with its %n programs.", "", programs)
                    : Question::tr("The container (%1) will be deleted.");
            label->setText(text.arg(TextUtils::readableSize(bytes)));
        });
}

/// Says what is deleted with the program and what is not. Size and file become known later; their lines are
/// laid out from the beginning, so that the dialog does not resize while it opens.
void addDetails(Fenk::Dialog* dialog, const Program& program, bool withBottle) {
    const ProgramRef ref = program.ref;
    if (ProgramRuns::instance()->isRunning(ref)) {
        auto* running =
            paragraph(Question::tr("The program is running and will be closed."), "removal_running");
        running->setTextRole(Fenk::Theme::Warning);
        dialog->addContent(running);
    }
    auto* size =
        withBottle ? paragraph(Question::tr("The container will be deleted."), "removal_size") : nullptr;
    auto* file = paragraph(Question::tr("Your file %1 stays.").arg(QFileInfo(program.path).fileName()),
                           "removal_file");
    QSizePolicy place = file->sizePolicy();
    place.setRetainSizeWhenHidden(mayBeOutside(program.path));
    file->setSizePolicy(place);
    if (size)
        dialog->addContent(size);
    dialog->addContent(file);
    file->hide();
    BottlesConfig::instance()->watchBottle(
        ref.bottle, dialog, [size, file, program](const BusResult& result) {
            const QString bottle = BottleRecord::path(result.object());
            if (bottle.isEmpty())
                return;
            file->setVisible(isOutside(program.path, bottle));
            if (size)
                showSize(size, bottle, BottleRecord::programs(result.object()).size());
        });
}

void remove(const Program& program, What what, const QPointer<QWidget>& over) {
    const ProgramRef ref = program.ref;
    // The service ends what runs in a bottle that it deletes.
    if (what == What::Program && ProgramRuns::instance()->isRunning(ref))
        ProgramStarts::instance()->stop(ref);
    changeServiceAsync(
        qApp, [ref, what] { return tryRemove(ref, what); },
        [program, what, over](const std::optional<BottleUtils::Removal>& removal) {
            const QString errorText = removal ? errorTextOf(*removal, what, program.name) : QString();
            if (!errorText.isEmpty())
                AppItemWidgetStateManager::instance()->reportFailure(program.ref.uuid, errorText);
            if (!removal && over)
                RemovalQuestion::ask(program, true, over);
        },
        ServiceThreads::inOrder());
}

void askFor(const Program& program, What what, QWidget* over) {
    const bool withBottle = what != What::Program;
    const QString message =
        withBottle ? Question::tr(
                         "Uninstalling the application deletes the application container and all "
                         "files and configuration information within the container!")
                   : Question::tr(
                         "There are multiple application shortcuts in the current application "
                         "container, this operation deletes only the currently selected "
                         "application shortcut!");
    auto* dialog = new Fenk::Dialog(titleOf(withBottle, program.name), message, over);
    dialog->setObjectName("removal_question");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFixedWidth(Fenk::Tokens::DialogMaxWidth - 2 * Fenk::Tokens::Space32);
    if (!dialog->title().contains(program.name))
        dialog->addContent(line(program.name, Fenk::Label::Strong));
    dialog->addContent(line(program.path, Fenk::Label::Small));
    addDetails(dialog, program, withBottle);
    dialog->addButton(withBottle ? Question::tr("Cancel Uninstall") : Question::tr("Cancel Delete"), true);
    const int confirm =
        dialog->addButton(withBottle ? Question::tr("Confirm Uninstall") : Question::tr("Confirm Delete"),
                          false, Fenk::Dialog::ButtonWarning);
    QObject::connect(dialog, &Fenk::Dialog::buttonClicked, dialog, [program, what, confirm, over](int index) {
        if (index == confirm)
            remove(program, what, over);
    });
    dialog->open();
}

}  // namespace

void RemovalQuestion::ask(const Program& program, bool withBottle, QWidget* over) {
    askFor(program, withBottle ? What::LastProgram : What::Program, over);
}

void RemovalQuestion::askForBottle(const Program& program, QWidget* over) {
    askFor(program, What::Bottle, over);
}
