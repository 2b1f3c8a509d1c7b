#include "shell/configuration/parameters/LogChannels.h"

#include <QCoreApplication>

#include "core/base/WineNames.h"

namespace LogChannels {

namespace {

const struct {
    const char* name;
    const char* channels;
} Entries[] = {
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Basic Logs"),
     "+tid,+pid,+process,+timestamp,+module,+loaddll,+seh,+text"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Window Logs"), "+win,+x11drv,+event"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "File Logs"), "+file,+ntdll"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Font Logs"), "+font,+dwrite"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Game Controls"), "+dinput,+joystick,+winmm,+xinput"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Game Graphics"), "+d3d"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Keyboard Input"), "+event,+key,+keyboard"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Mouse Logs"), "+cursor,+event"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Network Logs"), "+iphlpapi,+winhttp,+winsock,+wininet"},
    {QT_TRANSLATE_NOOP("WineChannerCombobox", "Sound Logs"),
     "+mmdevapi,+winmm,+driver,+msacm,+midi,+dsound,+dsound3d,+xaudio2,+xapofx,+dmusic,+mci,+pulse,+oss,+"
     "alsa,"
     "+coreaudio"},
};

}  // namespace

int count() {
    return int(std::size(Entries));
}

const char* name(int entry) {
    return Entries[entry].name;
}

QString channels(int entry) {
    return Entries[entry].channels;
}

QString withEntry(const QString& stored, int entry) {
    if (entry < 0 || entry >= count())
        return stored;
    QStringList all;
    for (const QString& channel : stored.split(',') + channels(entry).split(','))
        all << channel.trimmed();
    all.removeAll({});
    all.removeDuplicates();
    all.sort();
    return all.join(',');
}

QString environment(const QString& channels, const QString& wine) {
    QString text = "WINEDEBUG=" + (channels.isEmpty() ? WineNames::launchDebugChannels() : channels);
    if (WineNames::isGeProton(wine))
        text.remove("warn+file");
    return text;
}

}  // namespace LogChannels
