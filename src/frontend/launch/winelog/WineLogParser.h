#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTextStream>
#include <memory>

#include "launch/winelog/DistinctLines.h"

/// Parses the log of a Windows program that has exited. Use each object for one log, in any thread; it reads
/// synchronously, which takes about 0.1 s for the largest input. Parsers share no mutable state.
class WineLogParser : public QObject {
    Q_OBJECT

public:
    explicit WineLogParser(QObject* parent = nullptr);
    ~WineLogParser() override;

    /// Returns all findings (LogFinding) combined; LogNoFinding is always set. Reads only the last 10 MiB of
    /// a larger file, and treats an unreadable file as empty.
    int parseFile(const QString& path);

    /// Parses the rest of the stream.
    int parseStream(QTextStream& stream);

    QSet<QString> missingComponents;
    QSet<QString> missingFonts;
    bool monoMissing = false;
    QStringList parsedLogs;  ///< distinct lines with a finding, in order of first appearance
    QStringList otherLogs;   ///< other distinct lines of interest

    // Input for the diagnosis of a failure; the findings do not depend on these.
    QStringList drawnTexts;       ///< the last texts that the program drew, at most 200, as escaped by Wine
    QStringList startedPrograms;  ///< the lines of the first 200 process starts
    QStringList printedLines;     ///< lines of no debug channel; filled only by parseFile()

private:
    struct Rules;

    void begin();
    int parse(const QByteArray& bytes);
    int parseBytes(const QByteArray& bytes);
    void keep(const QString& line, unsigned rules);
    void keepDrawnText(const QString& line);
    /// `rules` has the bits of the rules that may match.
    void parseLine(const QString& line, unsigned rules, int* findings);

    std::unique_ptr<Rules> m_rules;
    DistinctLines m_parsed;
    DistinctLines m_other;
};
