#include "launch/winelog/LogLineScanner.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t FirstForRules = 2;

bool startsWithAny(const char* text, qint64 length, std::initializer_list<const char*> beginnings) {
    return std::any_of(beginnings.begin(), beginnings.end(), [&](const char* beginning) {
        const size_t size = strlen(beginning);
        return length >= qint64(size) && memcmp(text, beginning, size) == 0;
    });
}

}  // namespace

LogLineScanner::LogLineScanner(const QByteArray& bytes) : m_bytes(bytes), m_lower(bytes.toLower()) {
    // The first two make a line one of interest. Each rule needs one of the others, or what stands behind the
    // first two.
    constexpr std::array<const char*, 7> exact = {"err",
                                                  "fixme",
                                                  "Wine Mono is not installed",
                                                  "dbghelp:elf_search_auxv",
                                                  "seh:start_debugger",
                                                  "trace:text:DrawTextExW",
                                                  "trace:process:NtCreateUserProcess"};
    constexpr std::array<const char*, 2> lower = {"unimplemented", "\\\\font"};
    for (size_t i = 0; i < m_needles.size(); ++i) {
        const bool isExact = i < exact.size();
        const char* text = isExact ? exact[i] : lower[i - exact.size()];
        m_needles[i] = {isExact ? &m_bytes : &m_lower, text, int(strlen(text)), 0};
        seek(&m_needles[i], 0);
    }
}

void LogLineScanner::seek(Needle* needle, qint64 from) const {
    const char* data = needle->haystack->constData();
    const qint64 size = needle->haystack->size();
    const void* found = from < size
                            ? memmem(data + from, size_t(size - from), needle->text, size_t(needle->length))
                            : nullptr;
    needle->at = found ? static_cast<const char*>(found) - data : size;
}

bool LogLineScanner::isFollowedBy(Needle needle, qint64 begin, qint64 end,
                                  std::initializer_list<const char*> rests) const {
    for (needle.at < begin ? seek(&needle, begin) : void(); needle.at < end; seek(&needle, needle.at + 1)) {
        const qint64 behind = needle.at + needle.length;
        if (startsWithAny(m_bytes.constData() + behind, end - behind, rests))
            return true;
    }
    return false;
}

LogLineScanner::Kind LogLineScanner::next(const char** line, int* length) {
    for (;;) {
        const qint64 size = m_bytes.size();
        qint64 first = size;
        for (const Needle& needle : m_needles)
            first = std::min(first, needle.at);
        if (first >= size)
            return Kind::End;
        const char* data = m_bytes.constData();
        const void* before = memrchr(data + m_position, '\n', size_t(first - m_position));
        const qint64 begin = before ? static_cast<const char*>(before) - data + 1 : m_position;
        const void* behind = memchr(data + first, '\n', size_t(size - first));
        const qint64 end = behind ? static_cast<const char*>(behind) - data : size;
        const Kind kind = judge(begin, end);
        m_position = std::min(end + 1, size);
        for (Needle& needle : m_needles) {
            if (needle.at < m_position)
                seek(&needle, m_position);
        }
        if (kind == Kind::End)
            continue;
        *line = data + begin;
        const bool hasReturn = end > begin && data[end - 1] == '\r';
        *length = int(end - begin) - (hasReturn ? 1 : 0);
        return kind;
    }
}

/// Of a line that holds one of the needles; End for one that is of no use.
LogLineScanner::Kind LogLineScanner::judge(qint64 begin, qint64 end) const {
    const bool isForRules = std::any_of(m_needles.begin() + FirstForRules, m_needles.end(),
                                        [end](const Needle& needle) { return needle.at < end; }) ||
                            isFollowedBy(m_needles[0], begin, end,
                                         {":module:import_dll", ":combase:", ":mshtml:", ":setupapi:",
                                          ":eventlog:", "or while loading shared libraries"}) ||
                            isFollowedBy(m_needles[1], begin, end, {":msado15:"});
    if (isForRules)
        return Kind::ForRules;
    return isFollowedBy(m_needles[0], begin, end, {":environ:init_peb"}) ? Kind::End : Kind::OfInterest;
}
