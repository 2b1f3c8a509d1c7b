#pragma once

#include <QString>
#include <iosfwd>

namespace StoreServer {

/// Reads a whole store's directory as the server does, and prints every fault on a line, or a summary if
/// there are none. The exit status: 1 if there are faults.
int checkDirectory(const QString& directory, std::ostream& output);

}  // namespace StoreServer
