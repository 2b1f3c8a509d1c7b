#pragma once

#include <QString>

/// Maps a DLL (lower case, without suffix) to the component that contains it, from the catalogue file
/// dlls_search.json, which maps names to lists of components; the first one is used. The file is read on
/// first use, and again on each call until that succeeds. Thread-safe.
namespace DllTable {

/// Empty if no component contains the DLL. Logs the key and the result.
QString componentFor(const QString& key);

}  // namespace DllTable
