#pragma once

#include <QByteArray>

/// Finds the lines of a log that can matter to anybody, in one pass over the raw bytes: most of a log is
/// traces that no rule knows. For UTF-8, or whatever else keeps ASCII letters apart from others.
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
        bool isOfInterest = false;  ///< holds what has it listed as it is
    };

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
