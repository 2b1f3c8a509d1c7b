#pragma once

#include <QString>

/// Whether there is a session bus, without which no bottle can be created or changed. A lost connection is
/// not restored while the process lives.
namespace SessionBus {

bool isConnected();
/// The error text for the user, with what to do.
QString missingText();

}  // namespace SessionBus
