#include "launch/repair/FailureSearch.h"

#include <algorithm>

#include "launch/repair/FailurePatterns.h"
#include "launch/winelog/DllTable.h"
#include "launch/winelog/WineEscapes.h"
#include "launch/winelog/WineLogParser.h"

namespace {

constexpr int MaximumSigns = 64;
constexpr int LinesAtEachEnd = 1000;
constexpr int MaximumLineLength = 1024;  // characters that are searched
constexpr int MaximumNameLength = 80;

/// Removes control and other unprintable characters.
QString cleanName(const QString& name) {
    QString clean;
    for (const QChar c : name.left(MaximumNameLength)) {
        if (c.isPrint())
            clean += c;
    }
    return clean.trimmed();
}

/// Wine's name of an exception, converted to the exception code.
QString exceptionCode(const QString& words) {
    static const std::pair<const char*, const char*> names[] = {
        {"page fault", "c0000005"},       {"illegal instruction", "c000001d"},
        {"division by zero", "c0000094"}, {"privileged instruction", "c0000096"},
        {"stack overflow", "c00000fd"},
    };
    for (const auto& [name, code] : names) {
        if (words.startsWith(QLatin1String(name)))
            return code;
    }
    return QString(words).remove("exception 0x");
}

class Search {
public:
    void searchLines(const QStringList& lines, FailurePattern::Source source) {
        const int count = lines.size();
        for (int i = 0; i < count; ++i) {
            if (i == LinesAtEachEnd)
                i = std::max(i, count - LinesAtEachEnd);
            searchLine(lines.at(i).left(MaximumLineLength), source);
        }
    }

    QVector<FailureSign> inOrder() {
        std::stable_sort(m_signs.begin(), m_signs.end(),
                         [](const FailureSign& a, const FailureSign& b) { return a.failure < b.failure; });
        return m_signs;
    }

private:
    void searchLine(const QString& line, FailurePattern::Source source) {
        const QString text = source == FailurePattern::Said ? line.toLower() : line;
        for (const FailurePattern& pattern : failurePatterns()) {
            if (m_signs.size() >= MaximumSigns)
                return;
            if (pattern.source != source || !text.contains(pattern.text))
                continue;
            QString name;
            if (!pattern.detail.pattern().isEmpty()) {
                const auto match = pattern.detail.match(text);
                if (!match.hasMatch())
                    continue;
                name = cleanName(match.captured(1));
            }
            add(pattern, pattern.failure == Failure::Crash ? exceptionCode(name) : name);
        }
    }

    void add(const FailurePattern& pattern, const QString& name) {
        const bool isKnown = std::any_of(m_signs.cbegin(), m_signs.cend(), [&](const FailureSign& other) {
            return other.failure == pattern.failure && other.detail.compare(name, Qt::CaseInsensitive) == 0;
        });
        if (!isKnown)
            m_signs.append({pattern.failure, name, componentFor(pattern, name)});
    }

    static QString componentFor(const FailurePattern& pattern, const QString& name) {
        if (pattern.failure == Failure::MissingDll || pattern.failure == Failure::UnimplementedFunction)
            return DllTable::componentFor(name.toLower().remove(".dll"));
        if (pattern.failure == Failure::MissingDotNet && !name.isEmpty())
            return "dotnetcoredesktop" + name;
        // Only versions that have a component; `name` is untrusted.
        static const QRegularExpression framework(
            "^(1\\.1|[23]\\.0|3\\.5|4\\.0|4\\.5(\\.2)?|4\\.[67](\\.[12])?|4\\.8)$");
        if (pattern.failure == Failure::MissingDotNetFramework && framework.match(name).hasMatch())
            return "dotnet" + QString(name).remove('.');
        return pattern.component;
    }

    QVector<FailureSign> m_signs;
};

}  // namespace

QVector<FailureSign> FailureSearch::signs(const WineLogParser& log) {
    Search search;
    search.searchLines(log.parsedLogs, FailurePattern::Logged);
    search.searchLines(log.otherLogs, FailurePattern::Logged);
    search.searchLines(log.startedPrograms, FailurePattern::Logged);
    search.searchLines(log.printedLines, FailurePattern::Logged);
    search.searchLines(log.printedLines, FailurePattern::Said);
    QStringList drawn;
    for (const QString& text : log.drawnTexts)
        drawn << unescapedWineText(text);
    search.searchLines(drawn, FailurePattern::Said);
    return search.inOrder();
}
