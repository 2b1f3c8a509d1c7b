#include "shell/library/BottleBackupActions.h"

#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>

#include "backend/BottleBackups.h"
#include "backend/ServiceErrorText.h"
#include "backend/TextUtils.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"
#include "shell/library/BottleCopyDialog.h"
#include "widgets/FileChoice.h"

namespace {

const char Suffix[] = "cellarix-backup";
constexpr int LongestFileName = 60;  // characters; some file systems take 255 bytes

struct Actions {
    Q_DECLARE_TR_FUNCTIONS(BottleBackupActions)
};

QFileDialog* choose(QWidget* over, const QString& title) {
    const QString filter = Actions::tr("Backups (*.%1)").arg(Suffix);
    return FileChoice::make(FileChoice::Kind::Backup, over, title,
                            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), filter);
}

void begin(const Program& program, const QString& file, const QPointer<QWidget>& over) {
    if (!over)
        return;
    auto* dialog = new BottleCopyDialog(BottleCopy::backUp(program, file), over);
    QObject::connect(dialog, &BottleCopyDialog::repeatRequested, over,
                     [program, file, over] { begin(program, file, over); });
    dialog->open();
}

/// The dialog has asked about the name that the user has typed, not about the one with its suffix.
void onTargetChosen(const Program& program, const QString& typed, QWidget* over) {
    const QString suffix = QString(".%1").arg(Suffix);
    const QString file = typed.endsWith(suffix) ? typed : typed + suffix;
    if (file == typed || !QFileInfo::exists(file)) {
        begin(program, file, over);
        return;
    }
    auto* dialog = new Fenk::Dialog(
        Actions::tr("Replace File"),
        Actions::tr("%1 exists already. Replace it with the new backup?").arg(QFileInfo(file).fileName()),
        over);
    dialog->setObjectName("replace_question");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(Actions::tr("Cancel"), true);
    const int replace = dialog->addButton(Actions::tr("Replace"), false, Fenk::Dialog::ButtonWarning);
    QObject::connect(dialog, &Fenk::Dialog::buttonClicked, over, [replace, program, file, over](int index) {
        if (index == replace)
            begin(program, file, over);
    });
    dialog->open();
}

void showRefusal(const BusResult& result, QWidget* over) {
    const QString reason = result.ok ? ServiceErrorText::of(result.object()) : result.errorText();
    auto* dialog = new Fenk::Dialog(Actions::tr("This file cannot be restored."), reason, over);
    dialog->setObjectName("restore_refusal");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(Actions::tr("Close"), true);
    dialog->open();
}

void askToRestore(const QString& file, const QJsonObject& description, QWidget* over) {
    const QString name = BottleBackupActions::nameOf(description);
    const QString size = TextUtils::readableSize(qint64(description["bytes"].toDouble()));
    const QDateTime made = QDateTime::fromString(description["created"].toString(), Qt::ISODate);
    auto* dialog = new Fenk::Dialog(
        Actions::tr("Restore Backup"),
        Actions::tr("The programs come back in a container of their own. Nothing that is in the library is "
                    "replaced. Restore only a file that you trust as you would trust an installer."),
        over);
    dialog->setObjectName("restore_question");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFixedWidth(Fenk::Tokens::DialogMaxWidth - 2 * Fenk::Tokens::Space32);
    const QString details =
        made.isValid() ? Actions::tr("Backed up on %1. It takes %2 on the disk.")
                             .arg(QLocale().toString(made.toLocalTime().date(), QLocale::LongFormat), size)
                       : Actions::tr("It takes %1 on the disk.").arg(size);
    for (const auto& [text, kind] :
         {std::make_pair(name, Fenk::Label::Strong), std::make_pair(details, Fenk::Label::Small)}) {
        auto* label = new Fenk::Label(text, kind);
        label->setAlignment(Qt::AlignCenter);
        label->setElidedAfter(3);
        dialog->addContent(label);
    }
    dialog->addButton(Actions::tr("Cancel"));
    const int restore = dialog->addButton(Actions::tr("Restore"), true, Fenk::Dialog::ButtonRecommend);
    QObject::connect(dialog, &Fenk::Dialog::buttonClicked, over, [restore, name, file, over](int index) {
        if (index == restore)
            (new BottleCopyDialog(BottleCopy::restore(name, file), over))->open();
    });
    dialog->open();
}

}  // namespace

QString BottleBackupActions::fileNameFor(const QString& program, const QDate& today) {
    static const QRegularExpression special("[\\x00-\\x1f/\\\\:*?\"<>|]");
    QString name = program.left(LongestFileName).replace(special, " ").simplified();
    while (name.startsWith('.'))
        name.remove(0, 1);
    return QString("%1 %2.%3").arg(name, today.toString(Qt::ISODate), Suffix).trimmed();
}

QString BottleBackupActions::nameOf(const QJsonObject& description) {
    QStringList names;
    for (const QJsonValue& name : description["programs"].toArray())
        names += name.toString();
    return names.isEmpty() ? description["name"].toString() : QLocale().createSeparatedList(names);
}

void BottleBackupActions::backUp(const Program& program, QWidget* over) {
    QFileDialog* dialog = choose(over, Actions::tr("Back Up"));
    dialog->setObjectName("backup_file_dialog");
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(fileNameFor(program.name, QDate::currentDate()));
    QObject::connect(dialog, &QFileDialog::fileSelected, over,
                     [program, over](const QString& file) { onTargetChosen(program, file, over); });
    dialog->open();
}

void BottleBackupActions::restore(QWidget* over) {
    QFileDialog* dialog = choose(over, Actions::tr("Restore Backup"));
    dialog->setObjectName("restore_file_dialog");
    QObject::connect(dialog, &QFileDialog::fileSelected, over, [over](const QString& file) {
        BottleBackups::instance()->describe(file, over, [file, over](const BusResult& result) {
            if (result.ok && result.object()["ok"].toBool())
                askToRestore(file, result.object(), over);
            else
                showRefusal(result, over);
        });
    });
    dialog->open();
}
