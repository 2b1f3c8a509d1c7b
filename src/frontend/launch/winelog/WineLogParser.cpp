#include "launch/winelog/WineLogParser.h"

#include <QDebug>
#include <QFile>
#include <QTextCodec>
#include <array>

#include "fenk/system/RegularFile.h"
#include "launch/winelog/CommonRule.h"
#include "launch/winelog/DialogTextRule.h"
#include "launch/winelog/DllRules.h"
#include "launch/winelog/DotNetCoreDesktopRule.h"
#include "launch/winelog/FindCrashProcessRule.h"
#include "launch/winelog/LogLineScanner.h"
#include "launch/winelog/MissingFontsRule.h"
#include "launch/winelog/MissingODBCRule.h"
#include "launch/winelog/PrintedLines.h"

namespace {

constexpr qint64 MaximumBytes = 0xa00000;
constexpr int MibUtf8 = 106;
constexpr int LongestLine = 1024;  // characters of a kept crash line
constexpr unsigned AllRules = 0xff;
constexpr int DrawnTexts = 200;
constexpr int StartedPrograms = 200;

bool hasByteOrderMark(const QByteArray& bytes) {
    return bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff") || bytes.startsWith("\xef\xbb\xbf") ||
           bytes.startsWith(QByteArray("\0\0\xfe\xff", 4));
}

}  // namespace

struct WineLogParser::Rules {
    /// In the order of the bits in LogLineScanner::Rule.
    std::array<LogParseRule*, 8> inOrder() {
        return {&common,       &missingDll,        &missingFonts, &dialogText, &unimplementedFunction,
                &crashProcess, &dotNetCoreDesktop, &missingOdbc};
    }

    CommonRule common;
    MissingDLLRule missingDll;
    MissingFontsRule missingFonts;
    DialogTextRule dialogText;
    UnimplementedFunctionRule unimplementedFunction;
    FindCrashProcessRule crashProcess;
    DotNetCoreDesktopRule dotNetCoreDesktop;
    MissingODBCRule missingOdbc;
};

WineLogParser::WineLogParser(QObject* parent) : QObject(parent) {
    // Copies share the expressions, so each is compiled once per process.
    static const Rules prototype;
    m_rules = std::make_unique<Rules>(prototype);
}

WineLogParser::~WineLogParser() = default;

int WineLogParser::parseFile(const QString& path) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path))
        qWarning() << "failed to read logs file: " << path;
    else if (file.size() > MaximumBytes)
        file.seek(file.size() - MaximumBytes);
    const QByteArray bytes = file.isOpen() ? file.read(MaximumBytes) : QByteArray();
    const int findings = parse(bytes);
    printedLines = ::printedLines(bytes);
    // The crash line, which may be far from both ends of the log.
    const int crash = findings & LogCrash ? bytes.indexOf(QByteArray(", ") + CrashPrinted) : -1;
    if (crash >= 0)
        printedLines += ::printedLines(bytes.mid(bytes.lastIndexOf('\n', crash) + 1, LongestLine));
    return findings;
}

int WineLogParser::parse(const QByteArray& bytes) {
    // Raw bytes can be searched only in encodings that never use ASCII letters within other characters.
    if (hasByteOrderMark(bytes) || QTextCodec::codecForLocale()->mibEnum() != MibUtf8) {
        QTextStream stream(bytes);
        return parseStream(stream);
    }
    return parseBytes(bytes);
}

void WineLogParser::begin() {
    otherLogs.clear();
    m_other.clear();
}

int WineLogParser::parseStream(QTextStream& stream) {
    begin();
    int findings = LogNoFinding;
    while (!stream.atEnd())
        parseLine(stream.readLine(), AllRules, &findings);
    return findings;
}

int WineLogParser::parseBytes(const QByteArray& bytes) {
    begin();
    int findings = LogNoFinding;
    const QTextCodec* codec = QTextCodec::codecForMib(MibUtf8);
    LogLineScanner scanner(bytes);
    LogLineScanner::Line found;
    while (scanner.next(&found)) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        QString line = codec->toUnicode(found.text, found.length, &state);
        // Replace an incomplete character, except at the end of the file, where the rest may not have been
        // written yet.
        if (state.remainingChars && found.text + found.length != bytes.constData() + bytes.size())
            line += QString(state.remainingChars, QChar::ReplacementCharacter);
        if (found.rules)
            parseLine(line, found.rules, &findings);
        else
            m_other.add(line, &otherLogs);
    }
    return findings;
}

void WineLogParser::keep(const QString& line, unsigned rules) {
    if (rules & LogLineScanner::DialogText)
        keepDrawnText(line);
    const bool mayBeStart = rules & LogLineScanner::CrashProcess;
    if (mayBeStart && startedPrograms.size() < StartedPrograms &&
        line.contains(FindCrashProcessRule::Started))
        startedPrograms.append(line);
}

void WineLogParser::keepDrawnText(const QString& line) {
    const QLatin1String drawn(DialogTextRule::Drawn);
    const int at = line.indexOf(drawn);
    if (at < 0)
        return;
    if (drawnTexts.size() == DrawnTexts)
        drawnTexts.removeFirst();
    drawnTexts.append(line.mid(at + drawn.size()));
}

void WineLogParser::parseLine(const QString& line, unsigned rules, int* findings) {
    keep(line, rules);
    bool isOther = false;
    unsigned bit = 1;
    for (LogParseRule* rule : m_rules->inOrder()) {
        LogParseResult finding;
        const bool mayMatch = rules & bit;
        bit <<= 1;
        if (mayMatch && rule->match(line))
            finding = rule->result(line);
        if (finding.type == LogNoFinding) {
            isOther = true;
            continue;
        }
        *findings |= finding.type;
        m_parsed.add(line, &parsedLogs);
        if (finding.type == LogMissingFont)
            missingFonts.insert(finding.value);
        else if (finding.type == LogMissingMono)
            monoMissing = true;
        else if (finding.type == LogMissingComponent)
            missingComponents.insert(finding.value);
    }
    // A line with a finding is listed here as well, since the other rules found nothing in it.
    if (isOther && LogLineScanner::isOfInterest(line))
        m_other.add(line, &otherLogs);
}
