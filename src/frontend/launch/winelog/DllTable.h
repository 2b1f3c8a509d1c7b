#pragma once

#include <QString>

/// Which component brings a DLL, from the catalogue file dlls_search.json: names in lower case without suffix
/// to lists of components, of which the first is meant. The file is read when it is first needed and, as long
/// as it could not be, tried again at the next question. One table serves all threads.
namespace DllTable {

/// Logs the question and the answer, which is empty for a DLL that nobody brings.
QString componentFor(const QString& key);

}  // namespace DllTable
