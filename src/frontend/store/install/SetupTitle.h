#pragma once

#include <QString>

/// The heading of a phase of a set-up in the user's language. The background service sends it in English; one
/// that is not known here, as from a newer service, stays as it is.
QString setupTitle(const QString& english);
