#pragma once

#include <QString>

/// The service agreement that is asked at the first start. A question that was answered is remembered as the
/// version in the settings' "basic.update_log.version".
namespace ServiceAgreement {

/// False means that the process must not go on. Shows a modal dialog when it has to ask.
bool check();

/// Whether a start has to ask, given the version that the last start recorded.
bool mustAsk(const QString& recordedVersion);

/// Link to the agreement page in the user's language, as rich text.
QString link();

}  // namespace ServiceAgreement
