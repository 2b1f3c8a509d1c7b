#pragma once

#include <string_view>

#include "storeserver/reports/UploadKeys.h"

namespace StoreServer {

/// What an upload really is, by its first bytes.
namespace UploadContent {

constexpr size_t NeededBytes = 24;

/// The suffix under which it is kept, "png", "jpg", "gif" or "tar.gz"; null if it is not of the kind.
const char* suffixOf(std::string_view firstBytes, UploadKind kind);

/// Of a whole upload. Clients pack at most 32 MiB of logs.
constexpr size_t largest(UploadKind kind) {
    return kind == UploadKind::Image ? size_t(2) << 20 : size_t(34) << 20;
}

}  // namespace UploadContent

}  // namespace StoreServer
