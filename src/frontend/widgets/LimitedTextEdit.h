#pragma once

#include <QPlainTextEdit>

/// A text of several lines that is cut back to its maximum length while it is typed. Typing, pasting and the
/// cut that follows are one step to undo: undoing the cut alone would make the text too long again.
class LimitedTextEdit : public QPlainTextEdit {
    Q_OBJECT
public:
    /// In UTF-16 units.
    explicit LimitedTextEdit(int maximum, QWidget* parent = nullptr);

Q_SIGNALS:
    /// The text, which is not too long, has changed.
    void edited();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    template <class Insertion>
    void insert(int size, const Insertion& insertion);
    void cutBack();

    const int m_maximum;
};
