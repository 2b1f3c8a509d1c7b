#include "packaging/manifest/IntroductionEdit.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "packaging/manifest/ManifestForm.h"

using namespace Fenk;
using ManifestFormRules::MaximumIntroduction;

namespace {

void cutBack(QTextDocument* document) {
    QTextCursor rest(document);
    rest.setPosition(ManifestFormRules::cutIntroduction(document->toPlainText()).size());
    rest.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    rest.removeSelectedText();
}

/// What goes in at the cursor and the cut that follows are one step to undo: undoing the cut alone would make
/// the text too long again.
class LimitedEdit : public QPlainTextEdit {
protected:
    void keyPressEvent(QKeyEvent* event) override {
        const QString text = event->text();  // of a command a control character
        const bool isTyped = !text.isEmpty() && (text[0].isPrint() || text[0] == '\r');
        insert(isTyped ? text.size() : 0, [&] { QPlainTextEdit::keyPressEvent(event); });
    }
    void inputMethodEvent(QInputMethodEvent* event) override {
        insert(event->commitString().size(), [&] { QPlainTextEdit::inputMethodEvent(event); });
    }
    void insertFromMimeData(const QMimeData* source) override {
        insert(source->text().size(), [&] { QPlainTextEdit::insertFromMimeData(source); });
    }

private:
    template <class Insertion>
    void insert(int size, const Insertion& insertion) {
        if (size == 0 ||
            toPlainText().size() - textCursor().selectedText().size() + size <= MaximumIntroduction) {
            insertion();
            return;
        }
        QTextCursor step(document());
        step.beginEditBlock();
        insertion();
        cutBack(document());
        step.endEditBlock();
    }
};

}  // namespace

IntroductionEdit::IntroductionEdit(QWidget* parent)
    : QWidget(parent), m_edit(new LimitedEdit), m_counter(new Label(Label::Small)) {
    m_edit->setTabChangesFocus(true);
    m_edit->setFixedHeight(2 * Tokens::ControlHeight);
    m_counter->setTextRole(Theme::Secondary);
    m_counter->setObjectName("export_introduction_counter");
    m_counter->setAlignment(Qt::AlignRight);
    m_counter->setText(tr("(0/%1)").arg(MaximumIntroduction));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(m_edit);
    layout->addWidget(m_counter);
    setFocusProxy(m_edit);
    connect(m_edit, &QPlainTextEdit::textChanged, this, &IntroductionEdit::onTextChanged);
}

QString IntroductionEdit::text() const {
    return m_edit->toPlainText();
}

void IntroductionEdit::onTextChanged() {
    if (ManifestFormRules::cutIntroduction(text()).size() < text().size()) {
        cutBack(m_edit->document());  // calls this again
        return;
    }
    m_counter->setText(tr("(%1/%2)").arg(text().size()).arg(MaximumIntroduction));
    Q_EMIT textChanged();
}
