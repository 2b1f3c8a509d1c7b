#pragma once

#include <string_view>

namespace StoreServer {

/// Whether bytes may be given to the parser of JSON: nested at most so deeply, and no object names a key
/// twice, of which the parser would lose the first value without freeing its memory. Keys with escapes, which
/// could be the same as others, count as such. What is no JSON at all is left to the parser.
bool isParsableJson(std::string_view bytes, size_t maximumDepth);

}  // namespace StoreServer
