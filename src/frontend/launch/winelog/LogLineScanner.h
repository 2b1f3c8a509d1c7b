#pragma once

#include <QByteArray>
#include <array>
#include <initializer_list>

/// Finds the lines of a log that can matter to anybody, in one pass over the raw bytes: most of a log is
/// traces that no rule knows. Refuses only lines for which WineLogParser has no use; what it lets through may
/// still be of no use to a rule. For UTF-8.
class LogLineScanner {
public:
    enum class Kind { End, OfInterest, ForRules };

    /// The bytes must outlive the scanner.
    explicit LogLineScanner(const QByteArray& bytes);

    /// The next line without its end. OfInterest means that it is to be listed as it is: it holds "err" or
    /// "fixme", and no rule can match it.
    Kind next(const char** line, int* length);

private:
    struct Needle {
        const QByteArray* haystack = nullptr;
        const char* text = nullptr;
        int length = 0;
        qint64 at = -1;  ///< the next place from where the scanner stands; the size of the bytes is none
    };

    Kind judge(qint64 begin, qint64 end) const;
    void seek(Needle* needle, qint64 from) const;
    bool isFollowedBy(Needle needle, qint64 begin, qint64 end,
                      std::initializer_list<const char*> rests) const;

    QByteArray m_bytes;
    QByteArray m_lower;  ///< for what is looked for without regard to case
    std::array<Needle, 9> m_needles;
    qint64 m_position = 0;
};
