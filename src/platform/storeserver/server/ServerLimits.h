#pragma once

#include <chrono>
#include <cstddef>

namespace StoreServer {

/// How long a connection may wait in each phase, how many there may be, and how much memory their bodies and
/// answers may take. What is more than a limit ends one that has waited long for its client: of bodies and
/// answers the longest; of connections one of a network that has more than a quarter of all, and one that is
/// between requests before others.
struct ServerLimits {
    std::chrono::seconds idle{60};     ///< for the next request
    std::chrono::seconds reading{10};  ///< from a request's first byte to the last of its head
    std::chrono::seconds writing{30};  ///< for a whole answer to be taken
    std::chrono::seconds closing{2};   ///< for all answers when the server ends
    int connections = 1024;            ///< of one thread, or fewer if the system has not so many descriptors
    size_t heldBytes = 64 << 20;       ///< of one thread's bodies, and answers that clients have not taken
    std::chrono::seconds receiving{75};  ///< for a whole body
};

}  // namespace StoreServer
