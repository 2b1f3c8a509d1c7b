#include "fenk/window/Dialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <algorithm>
#include <optional>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk {

namespace {

constexpr int NoAnswer = -1;
std::optional<int> s_nextAnswer;

ButtonKind kindOf(Dialog::ButtonType type) {
    switch (type) {
        case Dialog::ButtonRecommend:
            return ButtonKind::Suggested;
        case Dialog::ButtonWarning:
            return ButtonKind::Destructive;
        default:
            return ButtonKind::Normal;
    }
}

bool isDestructive(const QPushButton* button) {
    return buttonKind(button) == ButtonKind::Destructive;
}

}  // namespace

Dialog::Dialog(QWidget* parent)
    : AbstractDialog(parent),
      m_message(new Label(Label::Body)),
      m_contents(new QVBoxLayout),
      m_row(new QHBoxLayout) {
    setMinimumWidth(Tokens::DialogMinWidth);
    m_message->setAlignment(Qt::AlignCenter);
    m_message->setReadingWidth(Tokens::DialogMaxWidth - 2 * Tokens::Space24);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setObjectName("dialog_message");
    m_message->hide();

    m_contents->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space24, Tokens::Space24);
    m_contents->setSpacing(Tokens::Space16);
    m_contents->addWidget(m_message);
    m_row->setSpacing(Tokens::Space12);
    bodyLayout()->addLayout(m_contents, 1);
    bodyLayout()->addLayout(m_row);
}

Dialog::Dialog(const QString& title, const QString& message, QWidget* parent) : Dialog(parent) {
    setTitle(title);
    setMessage(message);
}

void Dialog::setMessage(const QString& message) {
    m_message->setText(message);
    m_message->setVisible(!message.isEmpty());
    setAccessibleDescription(message);
}

QString Dialog::message() const {
    return m_message->text();
}

int Dialog::addButton(const QString& text, bool isDefault, ButtonType type) {
    auto* button = new QPushButton(text);
    button->setAccessibleName(text);
    button->setAutoDefault(false);
    setButtonKind(button, kindOf(type));
    connect(button, &QPushButton::clicked, this, [this, button] { click(button); });
    m_row->setContentsMargins(Tokens::Space24, 0, Tokens::Space24, Tokens::Space24);
    m_row->addWidget(button, 1);
    m_buttons.append(button);
    if (isDefault && type != ButtonWarning)
        m_default = button;
    equalizeButtons();
    return m_buttons.size() - 1;
}

void Dialog::addButtons(const QStringList& texts) {
    for (const QString& text : texts)
        addButton(text);
}

void Dialog::clearButtons() {
    // A click handler may call this, so the button must not be destroyed yet.
    for (QPushButton* button : qAsConst(m_buttons)) {
        m_row->removeWidget(button);
        button->hide();
        button->deleteLater();
    }
    m_row->setContentsMargins(0, 0, 0, 0);
    m_buttons.clear();
    m_default = nullptr;
}

QAbstractButton* Dialog::button(int index) const {
    return m_buttons.value(index);
}

void Dialog::addContent(QWidget* content) {
    m_contents->addWidget(content, content->sizePolicy().verticalPolicy() == QSizePolicy::Expanding ? 1 : 0);
}

void Dialog::clearContents() {
    while (m_contents->count() > 1) {
        QLayoutItem* item = m_contents->takeAt(1);
        if (item->widget())
            item->widget()->deleteLater();
        delete item;
    }
}

void Dialog::equalizeButtons() {
    int widest = 0;
    for (const QPushButton* button : qAsConst(m_buttons))
        widest = std::max(widest, button->sizeHint().width());
    for (QPushButton* button : qAsConst(m_buttons))
        button->setMinimumWidth(widest);
}

void Dialog::click(QPushButton* button) {
    const int index = m_buttons.indexOf(button);
    if (index < 0 || m_answered)
        return;
    const QPointer<Dialog> alive(this);
    Q_EMIT buttonClicked(index, button->text());
    if (alive && m_closesOnClick)
        done(index);
}

int Dialog::exec() {
    if (s_nextAnswer) {
        const int answer = *s_nextAnswer;
        s_nextAnswer.reset();
        if (QPushButton* chosen = m_buttons.value(answer))
            Q_EMIT buttonClicked(answer, chosen->text());
        done(answer);
        return answer;
    }
    m_answered = false;
    const QPointer<Dialog> alive(this);
    const int result = AbstractDialog::exec();
    return alive && m_answered ? result : NoAnswer;
}

void Dialog::done(int index) {
    m_answered = true;
    AbstractDialog::done(index);
}

void Dialog::reject() {
    const QPointer<Dialog> alive(this);
    done(NoAnswer);
    if (alive)
        Q_EMIT rejected();
}

void Dialog::setNextAnswer(int index) {
    s_nextAnswer = index;
}

QPushButton* Dialog::answerToReturn() const {
    const auto recommended = std::find_if(m_buttons.begin(), m_buttons.end(), [](const QPushButton* button) {
        return buttonKind(button) == ButtonKind::Suggested;
    });
    if (recommended != m_buttons.end())
        return *recommended;
    if (m_default)
        return m_default;
    return m_buttons.size() == 1 && !isDestructive(m_buttons.first()) ? m_buttons.first() : nullptr;
}

void Dialog::showEvent(QShowEvent* event) {
    AbstractDialog::showEvent(event);
    equalizeButtons();
    if (!event->spontaneous())
        m_answered = false;
    if (event->spontaneous() || (focusWidget() && isAncestorOf(focusWidget()) && focusWidget()->hasFocus()))
        return;
    QPushButton* first = answerToReturn();
    if (!first) {
        const auto harmless = std::find_if(m_buttons.begin(), m_buttons.end(),
                                           [](const QPushButton* button) { return !isDestructive(button); });
        first = harmless != m_buttons.end() ? *harmless : nullptr;
    }
    if (first)
        first->setFocus(Qt::ActiveWindowFocusReason);
}

void Dialog::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || (event->modifiers() & ~Qt::KeypadModifier)) {
        AbstractDialog::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat())
        return;
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    QPushButton* target = focused && focused->hasFocus() ? focused : answerToReturn();
    if (target && target->isEnabled())
        target->click();
}

}  // namespace Fenk
