#pragma once

#include <QString>
#include <iosfwd>

namespace StoreServer {

/// Text from outside on one line of a terminal: what controls it, or changes the direction of writing,
/// becomes a question mark. At most `columns` wide, with an ellipsis for the rest.
QString terminalText(const QString& text, int columns);

/// Prints the reports of a directory as a table, the oldest first, with their files below them, and the
/// scores of applications. A server may be using the directory. The exit status: 1 if it cannot be read.
int listReports(const QString& directory, std::ostream& output);

}  // namespace StoreServer
