#pragma once

#include <QString>

/// The heading of a phase of a set-up, or the line below it, in the user's language. The background service
/// sends both in English; what is not known here, as from a newer service or a manifest, stays as it is.
QString setupTitle(const QString& english);
