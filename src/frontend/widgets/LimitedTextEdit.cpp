#include "widgets/LimitedTextEdit.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>

#include "core/base/CutText.h"

LimitedTextEdit::LimitedTextEdit(int maximum, QWidget* parent) : QPlainTextEdit(parent), m_maximum(maximum) {
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (toPlainText().size() > m_maximum)
            cutBack();  // calls this again
        else
            Q_EMIT edited();
    });
}

void LimitedTextEdit::keyPressEvent(QKeyEvent* event) {
    const QString text = event->text();  // of a command a control character
    const bool isTyped = !text.isEmpty() && (text[0].isPrint() || text[0] == '\r');
    insert(isTyped ? text.size() : 0, [&] { QPlainTextEdit::keyPressEvent(event); });
}

void LimitedTextEdit::inputMethodEvent(QInputMethodEvent* event) {
    insert(event->commitString().size(), [&] { QPlainTextEdit::inputMethodEvent(event); });
}

void LimitedTextEdit::insertFromMimeData(const QMimeData* source) {
    insert(source->text().size(), [&] { QPlainTextEdit::insertFromMimeData(source); });
}

template <class Insertion>
void LimitedTextEdit::insert(int size, const Insertion& insertion) {
    if (size == 0 || toPlainText().size() - textCursor().selectedText().size() + size <= m_maximum) {
        insertion();
        return;
    }
    QTextCursor step(document());
    step.beginEditBlock();
    insertion();
    cutBack();
    step.endEditBlock();
}

void LimitedTextEdit::cutBack() {
    QTextCursor rest(document());
    rest.setPosition(cutText(toPlainText(), m_maximum).size());
    rest.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    rest.removeSelectedText();
}
