#pragma once

#include <QString>
#include <iosfwd>

namespace StoreServer {

/// Prints the reports of a directory as a table, the oldest first, with their files below them, and the
/// scores of applications. A server may be using the directory. The exit status: 1 if it cannot be read.
int listReports(const QString& directory, std::ostream& output);

}  // namespace StoreServer
