#pragma once

#include <string>

namespace StoreServer {

/// Who is behind a connection, for limits: the address of the connection, or what a web server on this
/// machine says at the end of X-Forwarded-For. Of the sixth version only the network's half, since a machine
/// has all addresses of it. Empty if it is not known.
std::string clientAddress(const std::string& peer, const std::string& forwardedFor);

}  // namespace StoreServer
