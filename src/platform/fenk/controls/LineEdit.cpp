#include "fenk/controls/LineEdit.h"

#include <QAccessible>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/WidgetLook.h"

namespace Fenk {

LineEdit::LineEdit(QWidget* parent)
    : QWidget(parent), m_edit(new QLineEdit), m_message(new Label(Label::Small)) {
    m_message->setTextRole(Theme::Danger);
    m_message->setWordWrap(true);
    m_message->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(m_edit);
    layout->addWidget(m_message);
    setFocusProxy(m_edit);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &LineEdit::hideAlertMessage);
    connect(m_edit, &QLineEdit::textChanged, this, &LineEdit::textChanged);
    connect(m_edit, &QLineEdit::textEdited, this, &LineEdit::hideAlertMessage);
    connect(m_edit, &QLineEdit::textEdited, this, &LineEdit::textEdited);
    connect(m_edit, &QLineEdit::editingFinished, this, &LineEdit::editingFinished);
    connect(m_edit, &QLineEdit::returnPressed, this, &LineEdit::returnPressed);
}

void LineEdit::setAccessibleName(const QString& name) {
    QWidget::setAccessibleName(name);
    m_edit->setAccessibleName(name);
}

void LineEdit::setAlert(bool alert) {
    m_alert = alert;
    setAlertState(m_edit, alert);
}

void LineEdit::showAlertMessage(const QString& message, int ms) {
    setAlert(true);
    m_message->setText(message);
    m_message->show();
    m_edit->setAccessibleDescription(message);
    QAccessibleEvent event(m_edit, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
    if (ms > 0)
        m_timer.start(ms);
    else
        m_timer.stop();
}

QString LineEdit::alertMessage() const {
    return m_message->isHidden() ? QString() : m_message->text();
}

void LineEdit::hideAlertMessage() {
    m_timer.stop();
    setAlert(false);
    m_message->hide();
    m_edit->setAccessibleDescription({});
}

}  // namespace Fenk
