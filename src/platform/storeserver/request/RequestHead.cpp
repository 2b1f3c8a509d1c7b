#include "storeserver/request/RequestHead.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace StoreServer {

namespace RequestHead {

namespace {

constexpr std::string_view End = "\r\n\r\n";
constexpr std::string_view LineEnd = "\r\n";
constexpr size_t LargestBody = size_t(1) << 40;

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? char(character - 'A' + 'a') : character;
}

bool isNamed(std::string_view line, std::string_view name) {
    return line.size() > name.size() && line[name.size()] == ':' &&
           std::equal(name.begin(), name.end(), line.begin(),
                      [](char left, char right) { return left == lower(right); });
}

bool isVisible(char character) {
    return static_cast<unsigned char>(character) > ' ' && character != 0x7F;
}

bool isHeader(std::string_view line) {
    const size_t colon = line.find(':');
    return colon != std::string_view::npos && colon > 0 &&
           std::all_of(line.begin(), line.begin() + std::ptrdiff_t(colon), isVisible);
}

/// Calls back with every line but the empty one.
template <class Function>
bool allLines(std::string_view head, Function function) {
    while (head.size() > LineEnd.size()) {
        const size_t end = head.find(LineEnd);
        if (end == 0 || end == std::string_view::npos)
            break;
        if (!function(head.substr(0, end)))
            return false;
        head.remove_prefix(end + LineEnd.size());
    }
    return true;
}

bool hasStrayCharacter(std::string_view head) {
    for (size_t index = 0; index < head.size(); ++index) {
        const char character = head[index];
        const bool isLineEnd = character == '\r' && index + 1 < head.size() && head[index + 1] == '\n';
        if (isLineEnd)
            ++index;
        else if (character != '\t' && character != ' ' && !isVisible(character))
            return true;
    }
    return false;
}

/// The value of a Content-Length header; its digits alone are strict.
State readLength(std::string_view value, size_t* length) {
    value.remove_prefix(std::min(value.find_first_not_of(" \t"), value.size()));
    value = value.substr(0, value.find_last_not_of(" \t") + 1);
    if (value.empty() ||
        !std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return State::Malformed;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), *length);
    return error == std::errc() && *length <= LargestBody ? State::Complete : State::BadBody;
}

State stateOf(std::string_view head, size_t* bodyLength) {
    if (hasStrayCharacter(head))
        return State::Malformed;
    State state = State::Complete;
    bool isFirst = true;
    int hosts = 0;
    int lengths = 0;
    allLines(head, [&](std::string_view line) {
        if (isFirst && line.size() > MaximumLineBytes)
            state = State::LineTooLong;
        else if (!isFirst && !isHeader(line))
            state = State::Malformed;
        else if (!isFirst && isNamed(line, "transfer-encoding"))
            state = State::BadBody;
        else if (!isFirst && isNamed(line, "content-length"))
            state = ++lengths > 1 ? State::Malformed : readLength(line.substr(15), bodyLength);
        else if (!isFirst && isNamed(line, "host") && ++hosts > 1)
            state = State::Malformed;
        isFirst = false;
        return state == State::Complete;
    });
    return state;
}

}  // namespace

Scan scan(std::string_view bytes) {
    // At once, for what speaks another protocol.
    if (!bytes.empty() && (lower(bytes.front()) < 'a' || lower(bytes.front()) > 'z'))
        return {State::Malformed, 0};
    const size_t end = bytes.substr(0, MaximumBytes).find(End);
    if (end != std::string_view::npos) {
        const size_t length = end + End.size();
        size_t bodyLength = 0;
        const State state = stateOf(bytes.substr(0, length), &bodyLength);
        return {state, length, state == State::Complete ? bodyLength : 0};
    }
    if (bytes.size() < MaximumBytes)
        return {State::Incomplete, 0};
    const bool isOneLine = bytes.substr(0, MaximumLineBytes).find(LineEnd) == std::string_view::npos;
    return {isOneLine ? State::LineTooLong : State::TooLong, 0};
}

const std::vector<std::string>& deviceHeaders() {
    static const std::vector<std::string> names = {"x-device-id",   "x-device-arch",  "x-client-ver",
                                                   "x-system-info", "acceptlanguage", "x-wine-ver",
                                                   "x-windows-ver", "x-simulator-ver"};
    return names;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

std::string reduced(std::string_view head) {
    static constexpr std::array<std::string_view, 5> kept = {"host", "connection", "x-vesk-language",
                                                             "x-forwarded-proto", "x-forwarded-for"};
    std::string result;
    allLines(head, [&result](std::string_view line) {
        const auto isIn = [line](const auto& names) {
            return std::any_of(names.begin(), names.end(),
                               [line](std::string_view name) { return isNamed(line, name); });
        };
        const bool isKept = result.empty() || isIn(kept) || isIn(deviceHeaders());
        if (isKept)
            result.append(line).append(LineEnd);
        return true;
    });
    return result.append(LineEnd);
}

}  // namespace RequestHead

}  // namespace StoreServer
