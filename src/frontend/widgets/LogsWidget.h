#pragma once

#include <QPlainTextEdit>
#include <QTimer>
#include <QVector>

/// The log of one launch: every line that was appended, with the time it came and its level. Error lines are
/// red and have a marker in the margin on the left, where the times are. While the widget is hidden it only
/// keeps the lines; the text is made when it is shown. Follows the end until the user scrolls up. Ctrl+C
/// copies the selection or, without one, everything; Ctrl+S saves everything.
class LogsWidget : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit LogsWidget(QWidget* parent = nullptr);

    /// `level` 1 is an error line, 3 an ordinary one. A text of several lines becomes as many lines.
    void appendLine(const QString& text, int level);

    int lineCount() const { return m_lines.size(); }
    /// Of the error lines those are none that Wine itself calls a fixme, a warning or a trace.
    bool isError(int line) const;
    QString timeOf(int line) const;

    /// The newest lines, oldest first, without their times.
    QStringList lastLines(int count) const;

    /// In pixels: what would show every line unbroken, with times and scroll bar.
    QSize unbrokenSize() const;

    /// Every line with its time, as it is copied and saved.
    QByteArray allLines() const;

    /// False when the file could not be written; it is then as it was.
    bool saveTo(const QString& path);

public Q_SLOTS:
    void copyText();
    void askWhereToSave();
    void updateIconAreaWidth();
    void updateLineNumberArea(const QRect& area, int scrolledBy);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    friend class LogsWidget_LeftIconWidget;
    struct Line {
        QByteArray text;  ///< UTF-8, half of what a QString takes
        int time;         ///< milliseconds since midnight
        int level;
    };

    void applyTheme();
    void fill();
    void followEnd();

    QVector<Line> m_lines;
    int m_filled = 0;   ///< lines that are in the document; each is one block
    int m_longest = 0;  ///< the line with the most bytes
    bool m_follows = true;
    QTimer m_fillTimer;
    QWidget* m_left;
};
