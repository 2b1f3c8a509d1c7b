#pragma once

#include <QString>

/// Wine's winemenubuilder.exe, which is switched off in all bottles.
namespace MenuBuilder {

/// Takes it out of the programs that wineboot starts with a prefix ("RunServices" in system.reg). Each first
/// start in a bottle would otherwise fail to start it and complain in the log. The prefix is at rest. Empty,
/// or a sentence.
QString removeFromStart(const QString& prefix);

}  // namespace MenuBuilder
