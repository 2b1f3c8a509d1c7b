#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "storeserver/request/StoreRequest.h"

namespace StoreServer {

/// Takes the body of one request as it comes, in the thread of its connection. A body whose connection ends
/// before it is complete is deleted without an answer.
class RequestBody {
public:
    virtual ~RequestBody() = default;

    /// In pieces of any size, all together as many bytes as the request has told.
    virtual void write(std::string_view bytes) = 0;
    /// Bytes in memory.
    virtual size_t held() const { return 0; }
    /// Called once, after the last byte.
    virtual StoreAnswer answer(const StoreRequest& request) = 0;
};

/// Decides about a body of so many bytes before it comes, from the head of its request; for any thread. Null
/// if it is not even to be read: 413.
using BodyTaker = std::function<std::unique_ptr<RequestBody>(const StoreRequest& head, size_t length)>;

}  // namespace StoreServer
