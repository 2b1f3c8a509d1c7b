#include "launch/inspection/OpenRefusal.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <iterator>

#include "backend/SessionBus.h"
#include "core/base/Paths.h"
#include "launch/inspection/ProgramKind.h"

namespace {

constexpr QChar FirstPrintable(' ');

struct Texts {
    const char* reason;
    const char* advice;
};

const struct {
    ProgramKind kind;
    Texts texts;
} KindTexts[] = {
    {ProgramKind::NoProgram,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is not a Windows program."),
      QT_TRANSLATE_NOOP("OpenRefusal",
                        "Cellarix runs programs and installers, such as .exe and .msi files.")}},
    {ProgramKind::ArchiveFile,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is an archive, not a program."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Unpack it first, then open the program inside.")}},
    {ProgramKind::WebPage,
     {QT_TRANSLATE_NOOP("OpenRefusal",
                        "It is a web page under the name of a program: the download has "
                        "failed."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Download the program again.")}},
    {ProgramKind::UnixProgram,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is a program for Linux, not for Windows."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Start it without Cellarix.")}},
    {ProgramKind::MisnamedPackage,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is a Windows Installer package, but its name does not say so."),
      QT_TRANSLATE_NOOP("OpenRefusal",
                        "Rename it so that it ends in .msi (.msp for a patch), then open it "
                        "again.")}},
    {ProgramKind::DosProgram,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is a DOS program, and Wine runs programs for Windows."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Run it in an emulator such as DOSBox.")}},
    {ProgramKind::Windows16,
     {QT_TRANSLATE_NOOP("OpenRefusal",
                        "It is a 16-bit program for old Windows versions, which 64-bit Wine "
                        "does not run."),
      QT_TRANSLATE_NOOP("OpenRefusal",
                        "Install 32-bit Wine (the package wine32), or look for a newer "
                        "version of the program.")}},
    {ProgramKind::Os2Program,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is a program for OS/2, not for Windows."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Look for a version for Windows.")}},
    {ProgramKind::ArmProgram,
     {QT_TRANSLATE_NOOP("OpenRefusal",
                        "It is made for Windows on ARM, and this computer has another kind of "
                        "processor."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Download the version for x64 or x86.")}},
    {ProgramKind::OtherProcessor,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is made for another kind of processor."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Download the version for x64 or x86.")}},
    {ProgramKind::Library,
     {QT_TRANSLATE_NOOP("OpenRefusal",
                        "It is a library (DLL): a part of a program, which cannot be started "
                        "by itself."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Open the program that it belongs to.")}},
    {ProgramKind::Driver,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is a driver or a part of Windows itself, which Wine cannot run."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Devices need a driver for Linux.")}},
    {ProgramKind::EfiProgram,
     {QT_TRANSLATE_NOOP("OpenRefusal", "It is a program for the computer's firmware (EFI), not for Windows."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Look for a version for Windows.")}},
    {ProgramKind::Incomplete,
     {QT_TRANSLATE_NOOP("OpenRefusal",
                        "The end of the file is missing: it was not downloaded or copied "
                        "completely."),
      QT_TRANSLATE_NOOP("OpenRefusal", "Download or copy it again.")}},
};

/// Texts for the kinds that are not launched.
Texts kindTexts(ProgramKind kind) {
    const auto* found = std::find_if(std::begin(KindTexts), std::end(KindTexts),
                                     [kind](const auto& row) { return row.kind == kind; });
    return found == std::end(KindTexts) ? Texts{nullptr, nullptr} : found->texts;
}

QString text(const char* source) {
    return QCoreApplication::translate("OpenRefusal", source);
}

OpenRefusal refusal(const Texts& texts, const QString& logLine) {
    return {text(texts.reason), text(texts.advice), logLine};
}

/// The launch itself reports the other characters that Windows does not allow in names.
OpenRefusal nameRefusal(const QString& path) {
    const auto isUnknown = [](QChar c) { return c < FirstPrintable; };
    // Windows allows these, but no bottle can be named after such a file.
    const auto isControl = [](QChar c) {
        return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
               c.category() == QChar::Separator_Paragraph;
    };
    const QString name = QFileInfo(path).fileName();
    if (std::none_of(path.begin(), path.end(), isUnknown) &&
        std::none_of(name.begin(), name.end(), isControl))
        return {};
    return refusal({QT_TRANSLATE_NOOP("OpenRefusal",
                                      "Its name or path contains a line break or another control character, "
                                      "which Windows does not allow."),
                    QT_TRANSLATE_NOOP("OpenRefusal", "Rename the file or its folder, then open it again.")},
                   "no Windows path can be made of " + path);
}

OpenRefusal fileRefusal(const QString& path) {
    const QFileInfo file(path);
    const QString notAFile = path + " not a file";  // same as the log line of a launch
    if (!file.exists() && path.contains(QChar::ReplacementCharacter))
        return refusal(
            {QT_TRANSLATE_NOOP("OpenRefusal", "Its name is not valid text (UTF-8)."),
             QT_TRANSLATE_NOOP("OpenRefusal", "Rename the file or its folder, then open it again.")},
            "No such file: " + path);
    if (!file.exists() && file.isSymLink())
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "It is a link to a file that is not there."),
                        QT_TRANSLATE_NOOP("OpenRefusal", "It may have been moved, renamed or deleted.")},
                       "No such file: " + path);
    if (!file.exists())
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "There is no such file."),
                        QT_TRANSLATE_NOOP("OpenRefusal", "It may have been moved, renamed or deleted.")},
                       "No such file: " + path);
    if (file.isDir())
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "It is a folder."),
                        QT_TRANSLATE_NOOP("OpenRefusal",
                                          "Open the program inside, or drop the folder on the window of "
                                          "Cellarix.")},
                       notAFile);
    if (!file.isFile())
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "It is a device or a pipe, not a file."),
                        QT_TRANSLATE_NOOP("OpenRefusal",
                                          "Cellarix runs programs and installers, such as .exe and .msi "
                                          "files.")},
                       notAFile);
    if (file.size() == 0)
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "The file is empty."),
                        QT_TRANSLATE_NOOP("OpenRefusal", "Download or copy it again.")},
                       notAFile);
    if (!file.isReadable())
        return refusal(
            {QT_TRANSLATE_NOOP("OpenRefusal", "You do not have the right to read this file."),
             QT_TRANSLATE_NOOP("OpenRefusal", "Change its permissions, or have its owner copy it for you.")},
            path + " is not readable, exit...");
    return {};
}

QString programsTitle() {
    return text(QT_TRANSLATE_NOOP("OpenRefusal", "Programs cannot be started"));
}

}  // namespace

/// The directory may have to be created first.
OpenRefusal OpenRefusal::ofBottlesPlace() {
    QString place = Paths::bottlesDataDir();
    while (!QFileInfo::exists(place) && place != QFileInfo(place).path())
        place = QFileInfo(place).path();
    if (QFileInfo(place).isDir() && ::access(QFile::encodeName(place).constData(), W_OK | X_OK) == 0)
        return {};
    return {text(QT_TRANSLATE_NOOP("OpenRefusal",
                                   "Nothing can be written into %1, where Cellarix keeps its programs."))
                .arg(place),
            text(QT_TRANSLATE_NOOP("OpenRefusal", "Make this folder writable for you, then try again.")),
            "cannot write into " + place, programsTitle()};
}

OpenRefusal OpenRefusal::of(const QString& path) {
    if (const OpenRefusal found = fileRefusal(path))
        return found;
    if (const OpenRefusal found = nameRefusal(path))
        return found;
    const ProgramHeader header = ProgramHeader::read(path);
    const ProgramKind kind = programKind(header, QFileInfo(path).suffix(), ProgramHost::thisMachine());
    if (kind != ProgramKind::Runnable)
        return refusal(kindTexts(kind), "Not a Windows program: " + path);
    return ofBottlesPlace();
}

OpenRefusal OpenRefusal::ofOther(const QString& path) {
    if (const OpenRefusal found = of(path))
        return found;
    const QString suffix = QFileInfo(path).suffix().toLower();
    const QString logLine = "Not a Windows program: " + path;
    if (suffix == QLatin1String("bat"))
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "Batch files are run from within Cellarix only."),
                        QT_TRANSLATE_NOOP("OpenRefusal", "Drop the file on the window of Cellarix.")},
                       logLine);
    if (suffix == QLatin1String("cmd"))
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "Batch files are run from within Cellarix only."),
                        QT_TRANSLATE_NOOP("OpenRefusal",
                                          "Rename it so that it ends in .bat, then drop it on the window of "
                                          "Cellarix.")},
                       logLine);
    if (suffix == QLatin1String("lnk"))
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "It is a shortcut of Windows, not a program."),
                        QT_TRANSLATE_NOOP("OpenRefusal", "Drop the file on the window of Cellarix.")},
                       logLine);
    if (suffix == QLatin1String("msp"))
        return refusal({QT_TRANSLATE_NOOP("OpenRefusal", "It is a patch for an installed program."),
                        QT_TRANSLATE_NOOP("OpenRefusal",
                                          "Open it with \"cellarix --debug\" and run it in the window that "
                                          "comes up.")},
                       logLine);
    return refusal(kindTexts(ProgramKind::NoProgram), logLine);
}

OpenRefusal OpenRefusal::noSessionBus() {
    return {SessionBus::missingText(), {}, "no session bus", programsTitle()};
}
