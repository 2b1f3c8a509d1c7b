#pragma once

#include <QString>

/// Wine's winemenubuilder.exe, which is switched off in all bottles.
namespace MenuBuilder {

/// Removes it from the programs that wineboot starts with a prefix ("RunServices" in system.reg). Otherwise
/// each first start in a bottle would fail to start it and log an error. Nothing may run in the prefix.
/// Returns an error text, empty on success.
QString removeFromStart(const QString& prefix);

}  // namespace MenuBuilder
