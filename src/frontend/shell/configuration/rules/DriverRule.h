#pragma once

#include <QString>

/// Whether the user has to be told that a 32-bit program needs drivers that are not installed.
namespace DriverRule {

/// Worth looking at the program's file at all.
bool isConcerned(const QString& architecture, const QString& runner);

/// `fileDescription` is what "file --brief" prints of the program.
bool isFor32Bit(const QString& fileDescription);

}  // namespace DriverRule
