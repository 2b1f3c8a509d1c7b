#pragma once

#include <QString>

/// The service agreement that the user has to accept at the first start. An accepted agreement is stored as
/// the program's version in the settings' "basic.update_log.version".
namespace ServiceAgreement {

/// False means that the process must not go on. Shows a modal dialog when the user has to be asked.
bool check();

/// Whether the user has to be asked, given the version that the last start stored.
bool mustAsk(const QString& recordedVersion);

/// Link to the agreement page in the user's language, as rich text.
QString link();

}  // namespace ServiceAgreement
