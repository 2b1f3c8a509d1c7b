#include "storeserver/request/RequestHead.h"

#include <algorithm>
#include <array>

namespace StoreServer {

namespace RequestHead {

namespace {

constexpr std::string_view End = "\r\n\r\n";
constexpr std::string_view LineEnd = "\r\n";

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

State stateOf(std::string_view head) {
    if (hasStrayCharacter(head))
        return State::Malformed;
    State state = State::Complete;
    bool isFirst = true;
    int hosts = 0;
    allLines(head, [&](std::string_view line) {
        if (isFirst && line.size() > MaximumLineBytes)
            state = State::LineTooLong;
        else if (!isFirst && !isHeader(line))
            state = State::Malformed;
        else if (!isFirst && isNamed(line, "transfer-encoding"))
            state = State::HasBody;
        else if (!isFirst && isNamed(line, "content-length") &&
                 line.substr(15).find_first_not_of(" \t0") != std::string_view::npos)
            state = State::HasBody;
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
        return {stateOf(bytes.substr(0, length)), length};
    }
    if (bytes.size() < MaximumBytes)
        return {State::Incomplete, 0};
    const bool isOneLine = bytes.substr(0, MaximumLineBytes).find(LineEnd) == std::string_view::npos;
    return {isOneLine ? State::LineTooLong : State::TooLong, 0};
}

std::string reduced(std::string_view head) {
    static constexpr std::array<std::string_view, 4> kept = {"host", "connection", "x-vesk-language",
                                                             "x-forwarded-proto"};
    std::string result;
    allLines(head, [&result](std::string_view line) {
        const bool isKept =
            result.empty() || std::any_of(kept.begin(), kept.end(),
                                          [line](std::string_view name) { return isNamed(line, name); });
        if (isKept)
            result.append(line).append(LineEnd);
        return true;
    });
    return result.append(LineEnd);
}

}  // namespace RequestHead

}  // namespace StoreServer
