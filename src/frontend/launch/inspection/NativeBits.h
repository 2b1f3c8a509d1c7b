#pragma once

#include <QString>

/// Whether a file is a program that only 32-bit code can run. False for .NET programs, which run either way,
/// and for whatever cannot be read. Reads some hundred bytes.
bool is32BitOnly(const QString& path);
