// The bytes that a connection of the store server brings, in pieces, against a small catalogue.
#include <QTemporaryDir>
#include <cstdlib>

#include "storeserver/catalogue/CatalogueLoader.h"
#include "storeserver/request/StoreAnswers.h"
#include "storeserver/server/Conversation.h"
#include "support/StoreFiles.h"

using namespace StoreServer;

namespace {

constexpr std::size_t MaximumOutput = 4 * 1024 * 1024;

std::shared_ptr<const Catalogue> catalogue() {
    static const std::shared_ptr<const Catalogue> made = [] {
        const TestSupport::StoreFiles files;
        files.add("notes", {7, "Notes", "记事本"});
        return CatalogueLoader(files.path(), 1).refresh().catalogue;
    }();
    return made;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    HttpExchange exchange(
        [](const StoreRequest& request) { return storeAnswer(request, {}, *catalogue(), 0); });
    Conversation conversation(exchange);
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    // The first byte tells how large the pieces are.
    const std::size_t piece = size > 0 ? std::size_t(data[0]) * 16 + 1 : 1;
    rest.remove_prefix(std::min<std::size_t>(rest.size(), 1));
    while (conversation.phase() != Conversation::Phase::Over && !rest.empty()) {
        conversation.receive(rest.substr(0, piece));
        rest.remove_prefix(std::min(piece, rest.size()));
        while (conversation.phase() == Conversation::Phase::Writing) {
            const std::string_view output = conversation.output();
            if (output.substr(0, 7) != "HTTP/1." || output.size() > MaximumOutput)
                std::abort();
            conversation.sent(output.size());
        }
    }
    return 0;
}
