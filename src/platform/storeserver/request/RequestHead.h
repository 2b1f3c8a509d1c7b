#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace StoreServer {

/// Looks at the bytes of a connection before they are parsed. Heads are short, and say how long a body is.
namespace RequestHead {

constexpr size_t MaximumBytes = 16 * 1024;
constexpr size_t MaximumLineBytes = 8000;  // of the request line; httplib refuses 8192

enum class State {
    Incomplete,   ///< more bytes are needed
    Complete,     ///< a head that may be parsed
    Malformed,    ///< 400
    TooLong,      ///< 431
    LineTooLong,  ///< 414
    BadBody,      ///< 413: of unknown length, or longer than any machine has room for
};

struct Scan {
    State state;
    size_t length;          ///< of the head with its empty line, if it is complete
    size_t bodyLength = 0;  ///< of what follows it
};

/// Strict: lines end in CR LF, headers have a name and are not folded, and nothing is a control character.
Scan scan(std::string_view bytes);

/// The headers, in small letters, that tell a report's device and what ran on it.
const std::vector<std::string>& deviceHeaders();

/// In small letters, of ASCII alone.
std::string lowered(std::string_view text);

/// A complete head without the headers that no answer depends on.
std::string reduced(std::string_view head);

}  // namespace RequestHead

}  // namespace StoreServer
