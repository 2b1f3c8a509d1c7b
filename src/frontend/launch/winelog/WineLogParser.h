#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTextStream>
#include <memory>

#include "launch/winelog/DistinctLines.h"

/// Reads the log of a Windows program that has ended and says what was wrong. Used once and dropped; reads in
/// the caller's thread (about a tenth of a second for the most that is ever read). Parsers share nothing that
/// changes, so that each thread may have one at work.
class WineLogParser : public QObject {
    Q_OBJECT

public:
    explicit WineLogParser(QObject* parent = nullptr);
    ~WineLogParser() override;

    /// The sum of all findings; LogNoFinding is always in it. Of a larger file only the last 10 MiB are read.
    /// A file that cannot be read is as an empty one.
    int parseFile(const QString& path);

    /// The same for what is left in a stream.
    int parseStream(QTextStream& stream);

    QSet<QString> missingComponents;
    QSet<QString> missingFonts;
    bool monoMissing = false;
    QStringList parsedLogs;  ///< each distinct line with a finding, in the order of its first appearance
    QStringList otherLogs;   ///< each other distinct line of interest

    // For the reason of a failure; the findings do not depend on them.
    QStringList drawnTexts;       ///< that the program has drawn last, at most 200, as Wine wrote them
    QStringList startedPrograms;  ///< lines about the first 200
    QStringList printedLines;     ///< of no channel; only from a file

private:
    struct Rules;

    void begin();
    int parse(const QByteArray& bytes);
    int parseBytes(const QByteArray& bytes);
    void keep(const QString& line, unsigned rules);
    void keepDrawnText(const QString& line);
    /// `rules` are the bits of those that may match.
    void parseLine(const QString& line, unsigned rules, int* findings);

    std::unique_ptr<Rules> m_rules;
    DistinctLines m_parsed;
    DistinctLines m_other;
};
