#include "storeserver/reports/UploadContent.h"

namespace StoreServer {

namespace UploadContent {

const char* suffixOf(std::string_view firstBytes, UploadKind kind) {
    using namespace std::string_view_literals;
    const auto startsWith = [firstBytes](std::string_view magic) {
        return firstBytes.substr(0, magic.size()) == magic;
    };
    if (kind == UploadKind::Archive)
        return startsWith("\x1F\x8B\x08"sv) ? "tar.gz" : nullptr;
    if (startsWith("\x89PNG\r\n\x1A\n"sv))
        return "png";
    if (startsWith("\xFF\xD8\xFF"sv))
        return "jpg";
    return startsWith("GIF87a"sv) || startsWith("GIF89a"sv) ? "gif" : nullptr;
}

}  // namespace UploadContent

}  // namespace StoreServer
