#include "launch/winelog/LogLineScanner.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "launch/winelog/CommonRule.h"
#include "launch/winelog/DialogTextRule.h"
#include "launch/winelog/DllRules.h"
#include "launch/winelog/DotNetCoreDesktopRule.h"
#include "launch/winelog/FindCrashProcessRule.h"
#include "launch/winelog/MissingFontsRule.h"
#include "launch/winelog/MissingODBCRule.h"

namespace {

constexpr unsigned OfInterest = 256, NotOfInterest = 512;  // beside the bits of the rules
constexpr int BlockSize = 16;
constexpr int LongestNeedle = 32;
constexpr char Error[] = "err";
constexpr char Fixme[] = "fixme";
constexpr char Ignored[] = "err:environ:init_peb";

using Block = std::uint8_t __attribute__((vector_size(BlockSize)));

/// What is looked for, and the places of two letters in it that seldom stand so by chance.
struct Needle {
    const char* text;
    int first, second;
    unsigned facts;
};

struct Rest {
    const char* text;
    unsigned facts;
};

/// What follows the word in a text. Fails to compile when the word is not in the text.
constexpr const char* behind(std::string_view word, const char* text) {
    return text + std::string_view(text).find(word) + word.size();
}

// Each rule needs one of these to match, or one of the rests behind the first two.
constexpr std::array<Needle, 7> Exact = {{
    {Error, 0, 2, OfInterest},
    {Fixme, 2, 3, OfInterest},
    {CommonRule::NoMono, 0, 5, LogLineScanner::Common},
    {CommonRule::NoSymbol, 3, 11, LogLineScanner::Common},
    {CommonRule::Debugger, 4, 9, LogLineScanner::Common},
    {DialogTextRule::Drawn, 11, 15, LogLineScanner::DialogText},
    {FindCrashProcessRule::Started, 14, 22, LogLineScanner::CrashProcess},
}};
// In any case of the letters. None of them may hold an s or a k: those have relatives that are not ASCII.
constexpr std::array<Needle, 2> AnyCase = {{
    {UnimplementedFunctionRule::Unimplemented, 0, 4, LogLineScanner::UnimplementedFunction},
    {MissingFontsRule::Folder, 1, 2, LogLineScanner::MissingFonts},
}};
constexpr std::array<Rest, 7> BehindError = {{
    {behind(Error, MissingDLLRule::Import), LogLineScanner::MissingDll},
    {behind(Error, CommonRule::NoWinRT), LogLineScanner::Common},
    {behind(Error, CommonRule::NoGecko), LogLineScanner::Common},
    {behind(Error, CommonRule::SetupApi), LogLineScanner::Common},
    {behind(Error, DotNetCoreDesktopRule::Reported), LogLineScanner::DotNetCoreDesktop},
    {behind(Error, CommonRule::NoLibraries), LogLineScanner::Common},
    {behind(Error, Ignored), NotOfInterest},
}};
constexpr std::array<Rest, 1> BehindFixme = {{
    {behind(Fixme, MissingODBCRule::Database), LogLineScanner::Common | LogLineScanner::MissingOdbc},
}};

constexpr std::uint8_t CaseBit = 0x20;

Block load(const char* at) {
    Block block;
    std::memcpy(&block, at, sizeof block);
    return block;
}

/// A byte that is not zero for each place where a needle may begin.
Block candidates(const char* at) {
    Block found = {};
    for (const Needle& needle : Exact)
        found |= Block((load(at + needle.first) == std::uint8_t(needle.text[needle.first])) &
                       (load(at + needle.second) == std::uint8_t(needle.text[needle.second])));
    for (const Needle& needle : AnyCase)
        found |= Block(
            ((load(at + needle.first) | CaseBit) == std::uint8_t(needle.text[needle.first] | CaseBit)) &
            ((load(at + needle.second) | CaseBit) == std::uint8_t(needle.text[needle.second] | CaseBit)));
    return found;
}

bool startsWith(const char* at, const char* end, const char* text) {
    const size_t length = std::strlen(text);
    return size_t(end - at) >= length && std::memcmp(at, text, length) == 0;
}

/// The text is in lower case.
bool startsWithAnyCase(const char* at, const char* end, const char* text) {
    for (; *text; ++at, ++text) {
        if (at == end || (*at >= 'A' && *at <= 'Z' ? *at | CaseBit : *at) != *text)
            return false;
    }
    return true;
}

template <size_t Count>
unsigned factsBehind(const char* at, const char* end, const std::array<Rest, Count>& rests) {
    for (const Rest& rest : rests) {
        if (startsWith(at, end, rest.text))
            return rest.facts;
    }
    return 0;
}

}  // namespace

bool LogLineScanner::isOfInterest(const QString& line) {
    return !line.contains(Ignored) && (line.contains(Error) || line.contains(Fixme));
}

LogLineScanner::LogLineScanner(const QByteArray& bytes)
    : m_position(bytes.constData()), m_end(bytes.constData() + bytes.size()) {}

unsigned LogLineScanner::factsAt(const char* at) const {
    if (startsWith(at, m_end, Exact[0].text))
        return OfInterest | factsBehind(at + std::strlen(Exact[0].text), m_end, BehindError);
    if (startsWith(at, m_end, Exact[1].text))
        return OfInterest | factsBehind(at + std::strlen(Exact[1].text), m_end, BehindFixme);
    for (const Needle& needle : Exact) {
        if (startsWith(at, m_end, needle.text))
            return needle.facts;
    }
    for (const Needle& needle : AnyCase) {
        if (startsWithAnyCase(at, m_end, needle.text))
            return needle.facts;
    }
    return 0;
}

/// The first place between the two where something begins that is looked for.
const char* LogLineScanner::seek(const char* from, const char* to, unsigned* facts) const {
    for (; from < to && m_end - from >= BlockSize + LongestNeedle; from += BlockSize) {
        const Block found = candidates(from);
        std::array<std::uint64_t, 2> words;
        std::memcpy(words.data(), &found, sizeof found);
        if ((words[0] | words[1]) == 0)
            continue;
        for (int i = 0; i < BlockSize && from + i < to; ++i) {
            if (found[i] && (*facts = factsAt(from + i)) != 0)
                return from + i;
        }
    }
    for (; from < to; ++from) {
        if ((*facts = factsAt(from)) != 0)
            return from;
    }
    return nullptr;
}

bool LogLineScanner::next(Line* line) {
    while (m_position < m_end) {
        unsigned facts = 0, more = 0;
        const char* at = seek(m_position, m_end, &facts);
        if (!at)
            break;
        const auto* before = static_cast<const char*>(memrchr(m_position, '\n', size_t(at - m_position)));
        const char* begin = before ? before + 1 : m_position;
        const auto* behind = static_cast<const char*>(std::memchr(at, '\n', size_t(m_end - at)));
        const char* end = behind ? behind : m_end;
        while ((at = seek(at + 1, end, &more)))
            facts |= more;
        m_position = behind ? end + 1 : m_end;
        line->rules = facts & (OfInterest - 1);
        line->isOfInterest = (facts & OfInterest) && !(facts & NotOfInterest);
        if (!line->rules && !line->isOfInterest)
            continue;
        line->text = begin;
        line->length = int(end - begin) - (end > begin && end[-1] == '\r' ? 1 : 0);
        return true;
    }
    m_position = m_end;
    return false;
}
