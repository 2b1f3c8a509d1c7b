#pragma once

#include "storeserver/catalogue/Catalogue.h"
#include "storeserver/request/StoreAddress.h"

namespace StoreServer {

/// The answers of the store: five endpoints below /vesk/client, and the icons they name below /icons. Uses
/// one of the catalogue's readers. An answer never has more of a request than the checked host. Does not
/// throw but for a want of memory.
StoreAnswer storeAnswer(const StoreRequest& request, const StoreAddress& address, const Catalogue& catalogue,
                        int reader);

/// The same for requests that have the same answer from one catalogue; empty for answers that are made
/// quickly.
std::string answerKey(const StoreRequest& request, const StoreAddress& address);

}  // namespace StoreServer
