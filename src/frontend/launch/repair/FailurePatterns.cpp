#include "launch/repair/FailurePatterns.h"

#include <QRegularExpression>
#include <algorithm>

#include "launch/winelog/DllTable.h"
#include "launch/winelog/WineLogParser.h"

namespace {

constexpr int MaximumSigns = 64;
constexpr int LinesAtEachEnd = 1000;
constexpr int LongestLine = 1024;  // characters that are looked at
constexpr int LongestName = 80;

struct Pattern {
    Failure failure;
    const char* text;    ///< that the line holds
    const char* detail;  ///< expression whose first capture is the name; the line must match it. Or null.
};

constexpr Pattern Patterns[] = {
    {Failure::MissingDll, ":module:import_dll Library ", R"(Library (.+) \(which is needed by .*not found)"},
    {Failure::UnimplementedFunction, "to unimplemented function ", R"(unimplemented function (\w+\.dll)\.)"},
};

struct Compiled {
    Failure failure;
    QString text;
    QRegularExpression detail;
};

const QVector<Compiled>& compiled() {
    static const QVector<Compiled> patterns = [] {
        QVector<Compiled> list;
        for (const Pattern& pattern : Patterns)
            list.append({pattern.failure, QString::fromUtf8(pattern.text),
                         QRegularExpression(QString::fromUtf8(pattern.detail))});
        return list;
    }();
    return patterns;
}

/// Names come from a stranger: whatever could break a line or mislead is gone.
QString cleanName(const QString& name) {
    QString clean;
    for (const QChar c : name.left(LongestName)) {
        if (c.isPrint())
            clean += c;
    }
    return clean.trimmed();
}

class Search {
public:
    void look(const QString& whole) {
        const QString line = whole.left(LongestLine);
        for (const Compiled& pattern : compiled()) {
            if (m_signs.size() >= MaximumSigns || !line.contains(pattern.text))
                continue;
            QString name;
            if (!pattern.detail.pattern().isEmpty()) {
                const auto match = pattern.detail.match(line);
                if (!match.hasMatch())
                    continue;
                name = cleanName(match.captured(1));
            }
            add({pattern.failure, name, {}});
        }
    }

    void lookThrough(const QStringList& lines) {
        const int tail = std::max(LinesAtEachEnd, lines.size() - LinesAtEachEnd);
        for (int i = 0; i < std::min(LinesAtEachEnd, lines.size()); ++i)
            look(lines.at(i));
        for (int i = tail; i < lines.size(); ++i)
            look(lines.at(i));
    }

    QVector<FailureSign> signs() {
        std::stable_sort(m_signs.begin(), m_signs.end(),
                         [](const FailureSign& a, const FailureSign& b) { return a.failure < b.failure; });
        return m_signs;
    }

private:
    void add(const FailureSign& sign) {
        const bool isKnown = std::any_of(m_signs.cbegin(), m_signs.cend(), [&](const FailureSign& other) {
            return other.failure == sign.failure &&
                   other.detail.compare(sign.detail, Qt::CaseInsensitive) == 0;
        });
        if (isKnown)
            return;
        m_signs.append(sign);
        if (sign.failure == Failure::MissingDll || sign.failure == Failure::UnimplementedFunction)
            m_signs.last().component = DllTable::componentFor(sign.detail.toLower().remove(".dll"));
    }

    QVector<FailureSign> m_signs;
};

}  // namespace

QVector<FailureSign> FailurePatterns::find(const WineLogParser& log) {
    Search search;
    search.lookThrough(log.parsedLogs);
    search.lookThrough(log.otherLogs);
    return search.signs();
}
