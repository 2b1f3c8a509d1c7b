#include "eventlog/EventLog.h"

#include <algorithm>
#include <cctype>

#include "eventlog/EventQueue.h"

namespace {

constexpr std::size_t MaximumNameBytes = 64;
constexpr std::size_t MaximumRecordBytes = 1 << 20;

bool isPlainName(const std::string& name) {
    const auto plain = [](unsigned char c) { return c < 128 && (std::isalnum(c) || c == '-' || c == '_'); };
    return !name.empty() && name.size() <= MaximumNameBytes && std::all_of(name.begin(), name.end(), plain);
}

EventQueue& queue() {
    static EventQueue instance;
    return instance;
}

/// The record on one line; empty if it is not an object. Line ends occur only between the tokens of JSON,
/// where they can be replaced by blanks.
std::string lineOf(const std::string& record) {
    if (record.size() < 2 || record.size() > MaximumRecordBytes || record.front() != '{' ||
        record.back() != '}')
        return {};
    std::string line = record;
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::replace(line.begin(), line.end(), '\r', ' ');
    return line + '\n';
}

}  // namespace

void Initialize(const std::string& program, bool collect) {
    try {
        queue().setProgram(collect && isPlainName(program) ? program : std::string());
    } catch (...) {
        // Out of memory: drop the record.
    }
}

void WriteEventLog(const std::string& record) {
    try {
        const std::string line = lineOf(record);
        if (!line.empty())
            queue().add(line);
    } catch (...) {
        // No thread can be started: drop the record.
    }
}
