#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTextStream>

class LogParseRule;

/// Reads the log of a Windows program that has ended and says what was wrong. Used once and dropped; reads in
/// the caller's thread (about a tenth of a second for the most that is ever read) and, because the rules keep
/// state that is shared by all parsers, never two at a time.
class WineLogParser : public QObject {
    Q_OBJECT

public:
    explicit WineLogParser(QObject* parent = nullptr) : QObject(parent) {}

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

private:
    /// A list of distinct lines that knows what is in it.
    struct Index {
        QSet<QString> known;
        void add(QStringList* lines, const QString& line);
    };

    void begin();
    int parseBytes(const QByteArray& bytes);
    void parseLine(const QString& line, int* findings);

    Index m_parsed;
    Index m_other;
};
