#pragma once

#include <QByteArray>
#include <QString>

/// Finds the lines of a log that a rule may match or that are listed as they are, in one pass over the raw
/// bytes: most of a log is traces that no rule knows. For encodings in which no part of a character is ASCII.
class LogLineScanner {
public:
    /// Bits in the order of the parser's rules.
    enum Rule : unsigned {
        Common = 1,
        MissingDll = 2,
        MissingFonts = 4,
        DialogText = 8,
        UnimplementedFunction = 16,
        CrashProcess = 32,
        DotNetCoreDesktop = 64,
        MissingOdbc = 128,
    };

    /// A line without its end.
    struct Line {
        const char* text = nullptr;
        int length = 0;
        unsigned rules = 0;         ///< those that may match; no other can
        bool isOfInterest = false;  ///< to be listed as it is
    };

    /// Whether a line is listed as it is.
    static bool isOfInterest(const QString& line);

    /// The bytes must outlive the scanner.
    explicit LogLineScanner(const QByteArray& bytes);

    /// The next line that is of interest or for a rule. False at the end.
    bool next(Line* line);

private:
    unsigned factsAt(const char* at) const;
    const char* seek(const char* from, const char* to, unsigned* facts) const;

    const char* m_position;
    const char* m_end;
};
