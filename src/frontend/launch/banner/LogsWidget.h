#pragma once

#include <QPlainTextEdit>
#include <QVector>

/// The log of one launch: every line that was appended, each with the time it came and its level. Error lines
/// are red and have a marker in the margin on the left, where the times are. While the widget is hidden it
/// only keeps the lines; the text is laid out when it is shown. Follows the end until the user scrolls up.
/// Ctrl+C copies the selection or, without one, everything; Ctrl+S saves.
class LogsWidget : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit LogsWidget(QWidget* parent = nullptr);

    /// `level` 1 is an error line, 3 an ordinary one. A text of several lines becomes as many lines.
    void appendLine(const QString& text, int level);

    /// The newest lines, oldest first, without their times.
    QStringList lastLines(int count) const;

private:
    struct Line {
        QByteArray text;  ///< UTF-8, half of what a QString takes
        qint64 time;      ///< milliseconds since the epoch
        int level;
    };
    QVector<Line> m_lines;
};
