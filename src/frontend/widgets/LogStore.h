#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTime>
#include <deque>

/// The newest lines of a log, each with the time of day when it came and its level. Bounded in lines and in
/// memory: the oldest lines are dropped and counted. A plain value; lines are numbered from 0, the oldest
/// that is kept.
class LogStore {
public:
    static constexpr int MaxLines = 200000;         ///< unless told otherwise
    static constexpr qint64 MaxBytes = 32 << 20;    ///< of memory, as bytes() counts; long lines drop earlier
    static constexpr int LineOverhead = 64;         ///< bytes that a line takes beside its text
    static constexpr int MaxLineBytes = 16 * 1024;  ///< of UTF-8; what is longer is cut and ends with "..."

    explicit LogStore(int maxLines = MaxLines) : m_maxLines(maxLines) {}

    /// An invalid time means that it is not known. `level` 1 is an error line, 3 an ordinary one, 0 an
    /// error line whatever its text says. A text of several lines becomes as many lines.
    void append(const QString& text, int level, const QTime& now = QTime::currentTime());

    /// Counts lines as dropped that were never appended.
    void skip(int lines) { m_dropped += lines; }

    int maxLines() const { return m_maxLines; }
    int lineCount() const { return int(m_lines.size()); }
    qint64 droppedLines() const { return m_dropped; }
    /// The memory that the lines take, in bytes.
    qint64 bytes() const { return m_bytes; }

    QString text(int line) const { return QString::fromUtf8(m_lines[size_t(line)].text); }
    /// Not for the lines of level 1 that Wine itself calls a fixme, a warning or a trace.
    bool isError(int line) const;
    /// "HH:mm:ss", or empty.
    QString timeOf(int line) const;

    /// The newest lines, oldest first, without their times.
    QStringList lastLines(int count) const;
    /// The text with the most bytes.
    QString longestLine() const;
    /// Every line with its time, where that is known.
    QByteArray allLines() const;

private:
    struct Line {
        QByteArray text;  ///< UTF-8, half of what a QString takes
        int time;         ///< milliseconds since midnight; -1: not known
        int level;
    };

    void appendLine(QByteArray text, int time, int level);
    static qint64 bytesOf(const Line& line) { return line.text.size() + LineOverhead; }

    int m_maxLines;
    std::deque<Line> m_lines;
    qint64 m_bytes = 0;
    qint64 m_dropped = 0;
};
