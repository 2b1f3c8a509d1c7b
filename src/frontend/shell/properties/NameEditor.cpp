#include "shell/properties/NameEditor.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {
constexpr int LongestName = 256;
/// Between the edge of the pen button and its picture.
}  // namespace

NameEditor::NameEditor(QWidget* parent)
    : QWidget(parent),
      m_label(new Label(Label::Body)),
      m_pen(new IconButton("fenk-edit", tr("Edit application name"), nullptr, IconButton::Compact)),
      m_field(new QLineEdit) {
    m_label->setObjectName("property_name");
    m_label->setElided(true);
    m_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_pen->setObjectName("property_name_pen");
    m_field->setObjectName("property_name_field");
    m_field->setAccessibleName(tr("App Name"));
    m_field->setMaxLength(LongestName);
    m_field->installEventFilter(this);
    m_field->hide();
    setFocusProxy(m_pen);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Tokens::Space8);
    row->addWidget(m_label, 1);
    row->addWidget(m_pen);
    row->addWidget(m_field, 1);
    connect(m_pen, &QToolButton::clicked, this, &NameEditor::beginEditing);
}

void NameEditor::setName(const QString& name) {
    m_name = name;
    m_label->setText(name.left(LongestName).simplified());
}

void NameEditor::setEditable(bool editable) {
    m_pen->setEnabled(editable);
}

void NameEditor::beginEditing() {
    if (m_editing || !m_pen->isEnabled())
        return;
    m_editing = true;
    m_field->setText(m_name);
    layout()->setContentsMargins(0, 0, PenOverhang, 0);
    m_label->hide();
    m_pen->hide();
    m_field->show();
    m_field->selectAll();
    m_field->setFocus();
}

void NameEditor::endEditing(bool isCommitted) {
    if (!m_editing)
        return;
    m_editing = false;
    const bool focused = m_field->hasFocus();
    layout()->setContentsMargins(0, 0, 0, 0);
    m_label->show();
    m_pen->show();
    if (focused)
        m_pen->setFocus(Qt::TabFocusReason);
    m_field->hide();
    if (isCommitted && m_field->isModified() && m_field->text() != m_name)
        Q_EMIT renamed(m_field->text());
}

bool NameEditor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
            endEditing(key != Qt::Key_Escape);
            Q_EMIT edited();
            return true;
        }
    }
    if (event->type() == QEvent::FocusOut) {
        // The field's own menu and a switch to another window do not end it.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
            endEditing(true);
    }
    return QWidget::eventFilter(watched, event);
}
