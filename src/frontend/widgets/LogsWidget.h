#pragma once

#include "widgets/LogView.h"

namespace Fenk {
class Label;
}

/// A log that grows: launch, debugging, packaging. Error lines are red and have a marker in the margin on
/// the left, where the times are. Ctrl+C copies the selection or, without one, everything; Ctrl+S saves
/// everything. Says above the text how many lines were dropped. GUI thread.
class LogsWidget : public LogView {
    Q_OBJECT
public:
    /// The oldest lines above `maxLines` are dropped.
    explicit LogsWidget(QWidget* parent = nullptr, int maxLines = LogStore::MaxLines);

    /// The newest lines, oldest first, without their times.
    QStringList lastLines(int count) const { return store().lastLines(count); }

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
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void applyTheme();
    void showDropped();
    QString droppedText() const;

    QWidget* m_left;
    Fenk::Label* m_dropped;
};
