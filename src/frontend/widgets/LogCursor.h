#pragma once

#include <QString>
#include <tuple>

class LogView;

/// The selection of a LogView: from where it began, the anchor, to where it has been moved, the caret. Owned
/// by its view.
class LogCursor {
public:
    enum class Step { Character, Word, Row, LineEdge, Document };
    struct Place {
        int line;
        int column;  ///< UTF-16 units
    };
    /// Columns of one line; `begin` == `end` where nothing is selected.
    struct Range {
        int begin;
        int end;
    };

    explicit LogCursor(const LogView* view) : m_view(view) {}

    Place caret() const { return m_caret; }
    /// Anchor and caret in the order of the text.
    Place first() const;
    Place last() const;
    bool hasSelection() const { return m_anchor.line != m_caret.line || m_anchor.column != m_caret.column; }
    QString selectedText() const;
    Range rangeIn(int line) const;

    /// Moves the caret; the anchor comes along unless `extends`.
    void moveTo(const Place& place, bool extends);
    /// Extends the selection by `count` steps; back if it is negative.
    void extend(Step step, int count);
    void selectWord(const Place& place);
    void selectLine(int line);
    void selectAll();
    /// The oldest `lines` are no more.
    void drop(int lines);

private:
    Place stepped(Step step, bool forward) const;
    Place steppedRow(bool forward) const;
    Place endOf(int line) const;

    const LogView* m_view;
    Place m_anchor{0, 0};
    Place m_caret{0, 0};
};
