#include "storeserver/reports/UploadContent.h"

#include <algorithm>

namespace StoreServer {

namespace UploadContent {

namespace {

using namespace std::string_view_literals;

constexpr char ReservedGzipFlags = char(0xE0);

bool startsWith(std::string_view bytes, std::string_view magic) {
    return bytes.substr(0, magic.size()) == magic;
}

/// Two numbers of so many bytes: neither is 0.
bool isSize(std::string_view bytes, size_t numberBytes) {
    const std::string_view zero = "\0\0\0\0"sv.substr(0, numberBytes);
    return bytes.size() >= 2 * numberBytes && bytes.substr(0, numberBytes) != zero &&
           bytes.substr(numberBytes, numberBytes) != zero;
}

std::string_view rest(std::string_view bytes, size_t index) {
    return bytes.substr(std::min(index, bytes.size()));
}

}  // namespace

/// The ends of files are not looked at: cameras put something after that of a picture.
const char* suffixOf(std::string_view firstBytes, UploadKind kind) {
    if (kind == UploadKind::Archive) {
        const bool isGzip = startsWith(firstBytes, "\x1F\x8B\x08"sv) && firstBytes.size() > 3 &&
                            (firstBytes[3] & ReservedGzipFlags) == 0;
        return isGzip ? "tar.gz" : nullptr;
    }
    if (startsWith(firstBytes, "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR"sv))
        return isSize(rest(firstBytes, 16), 4) ? "png" : nullptr;
    if (startsWith(firstBytes, "\xFF\xD8\xFF"sv))  // and a marker that may come first
        return firstBytes.size() > 3 && (firstBytes[3] & 0xC0) == 0xC0 ? "jpg" : nullptr;
    const bool isGif = startsWith(firstBytes, "GIF87a"sv) || startsWith(firstBytes, "GIF89a"sv);
    return isGif && isSize(rest(firstBytes, 6), 2) ? "gif" : nullptr;
}

}  // namespace UploadContent

}  // namespace StoreServer
