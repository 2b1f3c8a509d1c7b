#pragma once

#include <QString>

/// Whether there is a session bus, without which no bottle can be made or changed. One that has gone does not
/// come back in the life of a process.
namespace SessionBus {

bool isConnected();
/// For the user: what is missing, and what to do about it.
QString missingText();

}  // namespace SessionBus
