#pragma once

#include <QString>
#include <QStringList>

/// Wine's debug channels as the user chooses them, comma-separated as in WINEDEBUG.
namespace LogChannels {

/// The entries of the list in their order, in English; the user sees them translated in the context
/// WineChannerCombobox.
int count();
const char* name(int entry);
QString channels(int entry);

/// The stored channels with those of the entry added: each once, sorted. The stored text as it is for an
/// entry that does not exist.
QString withEntry(const QString& stored, int entry);

/// "WINEDEBUG=..." for a debugging run with this Wine version.
QString environment(const QString& channels, const QString& wine);

}  // namespace LogChannels
