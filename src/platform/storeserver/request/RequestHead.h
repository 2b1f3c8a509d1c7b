#pragma once

#include <string>
#include <string_view>

namespace StoreServer {

/// Looks at the bytes of a connection before they are parsed. Clients of the store send requests without a
/// body, whose head is short.
namespace RequestHead {

constexpr size_t MaximumBytes = 16 * 1024;
constexpr size_t MaximumLineBytes = 8000;  // of the request line; httplib refuses 8192

enum class State {
    Incomplete,   ///< more bytes are needed
    Complete,     ///< a head that may be parsed
    Malformed,    ///< 400
    TooLong,      ///< 431
    LineTooLong,  ///< 414
    HasBody,      ///< 413
};

struct Scan {
    State state;
    size_t length;  ///< of the head with its empty line, if it is complete
};

/// Strict: lines end in CR LF, headers have a name and are not folded, and nothing is a control character.
Scan scan(std::string_view bytes);

/// A complete head without the headers that no answer depends on.
std::string reduced(std::string_view head);

}  // namespace RequestHead

}  // namespace StoreServer
