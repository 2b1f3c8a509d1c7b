#include "backend/ServiceErrorText.h"

#include <QCoreApplication>

namespace {

constexpr int MaximumReasons = 12;

struct Row {
    const char* code;
    const char* text;
};

constexpr Row Rows[] = {
    {"busy", QT_TRANSLATE_NOOP("ServiceErrorText", "Programs run in the bottle: %1.")},
    {"no-bottle", QT_TRANSLATE_NOOP("ServiceErrorText", "There is no bottle \"%1\".")},
    {"no-wine",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "Wine is not installed on this machine. Install the packages wine and wine64.")},
    {"no-runner", QT_TRANSLATE_NOOP("ServiceErrorText", "The Wine runner \"%1\" is not installed.")},
    {"no-component", QT_TRANSLATE_NOOP("ServiceErrorText", "There is no component \"%1\".")},
    {"no-known-file",
     QT_TRANSLATE_NOOP("ServiceErrorText", "No file is known that \"%1\" could be installed from.")},
    {"not-for-this-wine",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Nothing of \"%1\" is made for the Wine of this bottle.")},
    {"no-address", QT_TRANSLATE_NOOP("ServiceErrorText", "It is not known where %1 can be had.")},
    {"no-checksum",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "No checksum of %1 is known, and sources.json does not allow files without one.")},
    {"has-winetricks",
     QT_TRANSLATE_NOOP(
         "ServiceErrorText",
         "The tool winetricks can install it (as \"%1\"): install the package winetricks and try again.")},
    {"http-status",
     QT_TRANSLATE_NOOP("ServiceErrorText", "%1 could not be fetched from %2: the server answers %3.")},
    {"no-connection",
     QT_TRANSLATE_NOOP("ServiceErrorText", "%1 could not be fetched: %2 cannot be reached.")},
    {"server-silent",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "%1 could not be fetched from %2: the server has been silent for too long.")},
    {"closed-too-soon",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "%1 could not be fetched from %2: the connection was closed too soon.")},
    {"fetch-failed", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 could not be fetched from %2: %3.")},
    {"other-checksum",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "What came from %2 is not the file %1 that was expected: its checksum is another.")},
    {"other-size",
     QT_TRANSLATE_NOOP(
         "ServiceErrorText",
         "What came from %2 is not the file %1 that was expected: it has %3 bytes and should have %4.")},
    {"too-large", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 from %2 is larger than it should be.")},
    {"no-room", QT_TRANSLATE_NOOP("ServiceErrorText", "There is not enough room on the disk for %1.")},
    {"disk-full", QT_TRANSLATE_NOOP("ServiceErrorText", "No space left on the disk that holds %1.")},
    {"cannot-write", QT_TRANSLATE_NOOP("ServiceErrorText", "Cannot write %1: %2.")},
    {"bad-archive", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 cannot be unpacked: %2.")},
    {"not-in-archive", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 does not hold %2.")},
    {"installer-code", QT_TRANSLATE_NOOP("ServiceErrorText", "The installer of %1 ended with code %2.")},
    {"installer-slow",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The installer of %1 took too long and was ended.")},
    {"installer-crashed",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The installer of %1 was killed or crashed.")},
    {"installer-not-started",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The installer of %1 could not be started: %2.")},
    {"needs-32-bit",
     QT_TRANSLATE_NOOP(
         "ServiceErrorText",
         "%1 is a program of 32 bits, and the Wine of this bottle runs none. Install 32-bit Wine "
         "(the package wine32), or choose another Wine version for the bottle.")},
    {"cancelled", QT_TRANSLATE_NOOP("ServiceErrorText", "The installation was cancelled.")},
    {"other-choice", QT_TRANSLATE_NOOP("ServiceErrorText", "Another choice was made.")},
    {"programs-not-ended",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Programs in the bottle could not be ended.")},
    {"no-ordinary-file", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 is no ordinary file that can be read.")},
    {"other-file",
     QT_TRANSLATE_NOOP("ServiceErrorText", "%1 is not the file that is needed. What is needed is %2.")},
    {"template-failed", QT_TRANSLATE_NOOP("ServiceErrorText", "Wine could not prepare an environment: %1.")},
    {"bad-export",
     QT_TRANSLATE_NOOP("ServiceErrorText", "%1 is no file of exported components, or it is damaged.")},
    {"not-on-machine",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The installation needs %1, which is not on this machine.")},
    {"export-running", QT_TRANSLATE_NOOP("ServiceErrorText",
                                         "Components are being exported already. Wait until that is done.")},
    {"export-cancelled", QT_TRANSLATE_NOOP("ServiceErrorText", "The export was cancelled.")},
    {"import-running", QT_TRANSLATE_NOOP("ServiceErrorText",
                                         "Components are being imported already. Wait until that is done.")},
    {"export-too-large",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "These are too many components for one file. Choose fewer at a time.")},
    {"too-many-files",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Too many files are chosen. Choose %1 at most.")},
    {"bad-backup", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 is no backup, or it is damaged.")},
    {"newer-backup", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 was made by a newer version of Cellarix.")},
    {"bottle-changed",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Files of the bottle were changed while it was being backed up.")},
    {"too-little-room",
     QT_TRANSLATE_NOOP("ServiceErrorText", "There is not enough room: %1 are needed and %2 are free.")},
    {"copy-under-way",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The file %1 is being written or read already.")},
    {"manifest-value",
     QT_TRANSLATE_NOOP("ServiceErrorText", "\"%1\" of the manifest must be text of at most %2 characters.")},
    {"manifest-name", QT_TRANSLATE_NOOP("ServiceErrorText", "The manifest needs a name.")},
    {"unfit-manifest",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "A setting of the bottle or an answer of the form cannot be written to a manifest.")},
    {"bad-dll-name", QT_TRANSLATE_NOOP("ServiceErrorText", "\"%1\" is no name of a DLL or program.")},
    {"bad-load-method", QT_TRANSLATE_NOOP("ServiceErrorText", "\"%1\" is no way to load a DLL.")},
    {"bad-font-name", QT_TRANSLATE_NOOP("ServiceErrorText", "\"%1\" is no name of a font.")},
    {"windows-not-set",
     QT_TRANSLATE_NOOP("ServiceErrorText", "This Wine cannot be set to the Windows version \"%1\": %2")},
    {"registry-unchanged",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The registry of the bottle was not changed: %1")},
    {"wine-file-gone",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "The bottle needs a file of a Wine that is no longer installed: %1.")},
    {"wine-busy",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Wine is still busy in the bottle. Try again in a moment.")},
    {"target-in-bottle",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The backup cannot lie in the bottle that it is made of: %1.")},
    {"bottle-unfit", QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle cannot be backed up: %1.")},
    {"cannot-read", QT_TRANSLATE_NOOP("ServiceErrorText", "Cannot read %1: %2.")},
    {"no-programs", QT_TRANSLATE_NOOP("ServiceErrorText", "%1 holds no Windows program.")},
    {"protected-archive",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "%1 is protected by a password. Unpack it first, and add the folder.")},
    {"unfit-folder",
     QT_TRANSLATE_NOOP("ServiceErrorText", "%1 cannot be copied as a program: it holds too much.")},
    {"no-free-name", QT_TRANSLATE_NOOP("ServiceErrorText", "There is no free name for the bottle.")},
    {"path-too-long",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The path is too long or too deep to be copied: %1.")},
    {"bottle-too-large",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle has too many files for a backup.")},
    {"backup-incomplete",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The backup holds no whole bottle: %1 is missing.")},
    {"not-updated", QT_TRANSLATE_NOOP("ServiceErrorText",
                                      "The bottle could not be brought to the Wine of this machine: %1")},
    {"files-not-written",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Files of the bottle could not be written: %1")},
    {"bottle-exists",
     QT_TRANSLATE_NOOP("ServiceErrorText", "There is a bottle \"%1\" already, which is not replaced: %2.")},
    {"being-set-up", QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle \"%1\" is being set up already.")},
    {"bad-manifest", QT_TRANSLATE_NOOP("ServiceErrorText", "The manifest cannot be used. %1")},
    {"service-ending", QT_TRANSLATE_NOOP("ServiceErrorText", "The service is ending.")},
    {"no-dlls", QT_TRANSLATE_NOOP("ServiceErrorText", "\"%1\" holds no DLLs.")},
    {"command-code",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The command \"%1\" of the manifest ended with code %2.")},
    {"command-slow", QT_TRANSLATE_NOOP("ServiceErrorText",
                                       "The command \"%1\" of the manifest took too long and was ended.")},
    {"command-crashed",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The command \"%1\" of the manifest was killed or crashed.")},
    {"command-not-started",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The command \"%1\" of the manifest could not be started: %2")},
    {"no-bottle-there", QT_TRANSLATE_NOOP("ServiceErrorText",
                                          "There is something named \"%1\" already that is no bottle: a "
                                          "link, or a directory without bottle.yml.")},
    {"being-packed",
     QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle is being packed. Try again when that is done.")},
    {"being-upgraded",
     QT_TRANSLATE_NOOP("ServiceErrorText",
                       "The bottle is being brought up to date with its package. Try again in a moment.")},
    {"being-changed",
     QT_TRANSLATE_NOOP("ServiceErrorText", "Another program is changing the bottle. Try again in a moment.")},
    {"bad-bottle-name", QT_TRANSLATE_NOOP("ServiceErrorText", "\"%1\" cannot be the name of a bottle. %2")},
    {"package-installed", QT_TRANSLATE_NOOP("ServiceErrorText", "The package of \"%1\" is installed.")},
};

const char* formatOf(const QString& code) {
    for (const Row& row : Rows) {
        if (code == QLatin1String(row.code))
            return row.text;
    }
    return nullptr;
}

/// Replaces all places at once, since an argument may contain "%1".
QString withArguments(QString text, const QJsonArray& arguments) {
    const int count = qMin(arguments.size(), 9);
    for (int i = 1; i <= count; ++i)
        text.replace('%' + QString::number(i), QString(QChar(0xe000 + i)));
    for (int i = 1; i <= count; ++i)
        text.replace(QChar(0xe000 + i), arguments[i - 1].toString());
    return text;
}

/// Empty when the code is not known.
QString textOf(const QJsonObject& reason) {
    const char* format = formatOf(reason["code"].toString());
    return format ? withArguments(QCoreApplication::translate("ServiceErrorText", format),
                                  reason["arguments"].toArray())
                  : reason["text"].toString();
}

}  // namespace

QString ServiceErrorText::of(const QJsonArray& reasons, const QString& english) {
    QString all;
    if (reasons.size() > MaximumReasons)
        return english;
    for (const QJsonValue& reason : reasons) {
        const QString text = textOf(reason.toObject());
        if (text.isEmpty())
            return english;
        // A full-width stop needs no space.
        if (!all.isEmpty() && !all.endsWith(QChar(0x3002)))
            all += ' ';
        all += text;
    }
    return all.isEmpty() ? english : all;
}

QString ServiceErrorText::of(const QJsonObject& result) {
    return of(result["reasons"].toArray(), result["error"].toString());
}
