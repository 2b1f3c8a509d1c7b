#pragma once

#include <QString>

namespace Fenk {

/// The name of the directory's entry that equals name without regard to case: an exact match first, else the
/// first in the order of names; empty when there is none. "." and ".." are entries, and a dangling link is
/// one.
QString findIgnoringCase(const QString& directory, const QString& name);

}  // namespace Fenk
