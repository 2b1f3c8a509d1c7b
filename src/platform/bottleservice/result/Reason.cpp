#include "bottleservice/result/Reason.h"

#include <QFileInfo>
#include <QJsonObject>

namespace {

constexpr int MaximumArgument = 400;  // characters; addresses and lists of programs

/// In the order of Reason::Code. Names and numbers of arguments are part of the wire format.
constexpr Reason::Format Formats[] = {
    {"", "%1"},
    {"busy", "Programs run in the bottle: %1."},
    {"no-bottle", "There is no bottle \"%1\"."},
    {"no-wine", "Wine is not installed on this machine. Install the packages wine and wine64."},
    {"no-runner", "The Wine runner \"%1\" is not installed."},
    {"no-component", "There is no component \"%1\"."},
    {"no-known-file", "No file is known that \"%1\" could be installed from."},
    {"not-for-this-wine", "Nothing of \"%1\" is made for the Wine of this bottle."},
    {"no-address", "It is not known where %1 can be had."},
    {"no-checksum", "No checksum of %1 is known, and sources.json does not allow files without one."},
    {"has-winetricks",
     "The tool winetricks can install it (as \"%1\"): install the package winetricks and try again."},
    {"http-status", "%1 could not be fetched from %2: the server answers %3."},
    {"no-connection", "%1 could not be fetched: %2 cannot be reached."},
    {"server-silent", "%1 could not be fetched from %2: the server has been silent for too long."},
    {"closed-too-soon", "%1 could not be fetched from %2: the connection was closed too soon."},
    {"fetch-failed", "%1 could not be fetched from %2: %3."},
    {"other-checksum", "What came from %2 is not the file %1 that was expected: its checksum is another."},
    {"other-size",
     "What came from %2 is not the file %1 that was expected: it has %3 bytes and should have %4."},
    {"too-large", "%1 from %2 is larger than it should be."},
    {"no-room", "There is not enough room on the disk for %1."},
    {"disk-full", "No space left on the disk that holds %1."},
    {"cannot-write", "Cannot write %1: %2."},
    {"bad-archive", "%1 cannot be unpacked: %2."},
    {"not-in-archive", "%1 does not hold %2."},
    {"installer-code", "The installer of %1 ended with code %2."},
    {"installer-slow", "The installer of %1 took too long and was ended."},
    {"installer-crashed", "The installer of %1 was killed or crashed."},
    {"installer-not-started", "The installer of %1 could not be started: %2."},
    {"needs-32-bit",
     "%1 is a program of 32 bits, and the Wine of this bottle runs none. Install 32-bit Wine (the package "
     "wine32), or choose another Wine version for the bottle."},
    {"cancelled", "The installation was cancelled."},
    {"other-choice", "Another choice was made."},
    {"programs-not-ended", "Programs in the bottle could not be ended."},
    {"no-ordinary-file", "%1 is no ordinary file that can be read."},
    {"other-file", "%1 is not the file that is needed. What is needed is %2."},
    {"template-failed", "Wine could not prepare an environment: %1."},
    {"bad-export", "%1 is no file of exported components, or it is damaged."},
    {"not-on-machine", "The installation needs %1, which is not on this machine."},
    {"export-running", "Components are being exported already. Wait until that is done."},
    {"export-cancelled", "The export was cancelled."},
    {"import-running", "Components are being imported already. Wait until that is done."},
    {"export-too-large", "These are too many components for one file. Choose fewer at a time."},
    {"too-many-files", "Too many files are chosen. Choose %1 at most."},
    {"bad-backup", "%1 is no backup, or it is damaged."},
    {"newer-backup", "%1 was made by a newer version of Cellarix."},
    {"bottle-changed", "Files of the bottle were changed while it was being backed up."},
    {"too-little-room", "There is not enough room: %1 are needed and %2 are free."},
    {"copy-under-way", "The file %1 is being written or read already."},
    {"manifest-value", "\"%1\" of the manifest must be text of at most %2 characters."},
    {"manifest-name", "The manifest needs a name."},
    {"unfit-manifest", "A setting of the bottle or an answer of the form cannot be written to a manifest."},
    {"bad-dll-name", "\"%1\" is no name of a DLL or program."},
    {"bad-load-method", "\"%1\" is no way to load a DLL."},
    {"bad-font-name", "\"%1\" is no name of a font."},
    {"windows-not-set", "This Wine cannot be set to the Windows version \"%1\": %2"},
    {"registry-unchanged", "The registry of the bottle was not changed: %1"},
    {"wine-file-gone", "The bottle needs a file of a Wine that is no longer installed: %1."},
    {"wine-busy", "Wine is still busy in the bottle. Try again in a moment."},
    {"target-in-bottle", "The backup cannot lie in the bottle that it is made of: %1."},
    {"bottle-unfit", "The bottle cannot be backed up: %1."},
    {"cannot-read", "Cannot read %1: %2."},
    {"no-programs", "%1 holds no Windows program."},
    {"protected-archive", "%1 is protected by a password. Unpack it first, and add the folder."},
    {"unfit-folder", "%1 cannot be copied as a program: it holds too much."},
    {"no-free-name", "There is no free name for the bottle."},
    {"path-too-long", "The path is too long or too deep to be copied: %1."},
    {"bottle-too-large", "The bottle has too many files for a backup."},
    {"backup-incomplete", "The backup holds no whole bottle: %1 is missing."},
    {"not-updated", "The bottle could not be brought to the Wine of this machine: %1"},
    {"files-not-written", "Files of the bottle could not be written: %1"},
    {"bottle-exists", "There is a bottle \"%1\" already, which is not replaced: %2."},
    {"being-set-up", "The bottle \"%1\" is being set up already."},
    {"bad-manifest", "The manifest cannot be used. %1"},
    {"service-ending", "The service is ending."},
    {"no-dlls", "\"%1\" holds no DLLs."},
    {"command-code", "The command \"%1\" of the manifest ended with code %2."},
    {"command-slow", "The command \"%1\" of the manifest took too long and was ended."},
    {"command-crashed", "The command \"%1\" of the manifest was killed or crashed."},
    {"command-not-started", "The command \"%1\" of the manifest could not be started: %2"},
    {"no-bottle-there",
     "There is something named \"%1\" already that is no bottle: a link, or a directory without bottle.yml."},
    {"being-packed", "The bottle is being packed. Try again when that is done."},
    {"being-upgraded", "The bottle is being brought up to date with its package. Try again in a moment."},
    {"being-changed", "Another program is changing the bottle. Try again in a moment."},
    {"bad-bottle-name", "\"%1\" cannot be the name of a bottle. %2"},
    {"package-installed", "The package of \"%1\" is installed."},
};
static_assert(sizeof(Formats) / sizeof(*Formats) == Reason::CodeCount, "each code has its format");

}  // namespace

Reason::Reason(const QString& text) {
    if (!text.isEmpty())
        m_parts += Part{NoCode, {text}};
}

Reason::Reason(Code code, const QStringList& arguments) {
    QStringList limited;
    for (const QString& argument : arguments)
        limited += argument.left(MaximumArgument);
    m_parts += Part{code, limited};
}

Reason& Reason::operator+=(const Reason& other) {
    m_parts += other.m_parts;
    return *this;
}

QString Reason::Part::text() const {
    if (code == NoCode)
        return arguments.first();
    // All at once, since an argument may contain "%1" itself.
    QString text = formatOf(code).text;
    for (int i = arguments.size(); i > 0; --i)
        text.replace(QString("%%1").arg(i), QString(QChar(0xe000 + i)));
    for (int i = 0; i < arguments.size(); ++i)
        text.replace(QChar(0xe001 + i), arguments[i]);
    return text;
}

QString Reason::text() const {
    QStringList texts;
    for (const Part& part : m_parts)
        texts += part.text();
    return texts.join(' ');
}

QJsonArray Reason::toJson() const {
    QJsonArray reasons;
    for (const Part& part : m_parts)
        reasons += part.code == NoCode
                       ? QJsonObject{{"text", part.arguments.first()}}
                       : QJsonObject{{"code", formatOf(part.code).name},
                                     {"arguments", QJsonArray::fromStringList(part.arguments)}};
    return reasons;
}

Reason Reason::ofWriting(const QString& path, bool isDiskFull, const QString& detail) {
    return isDiskFull ? Reason(NoRoom, {QFileInfo(path).fileName()}) : Reason(CannotWrite, {path, detail});
}

Reason::Format Reason::formatOf(Code code) {
    return Formats[code];
}
