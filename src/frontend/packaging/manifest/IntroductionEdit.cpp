#include "packaging/manifest/IntroductionEdit.h"

#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "packaging/manifest/ManifestForm.h"
#include "widgets/LimitedTextEdit.h"

using namespace Fenk;
using ManifestFormRules::MaximumIntroduction;

IntroductionEdit::IntroductionEdit(QWidget* parent)
    : QWidget(parent), m_edit(new LimitedTextEdit(MaximumIntroduction)), m_counter(new Label(Label::Small)) {
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
    connect(m_edit, &LimitedTextEdit::edited, this, &IntroductionEdit::onTextChanged);
}

QString IntroductionEdit::text() const {
    return m_edit->toPlainText();
}

void IntroductionEdit::onTextChanged() {
    m_counter->setText(tr("(%1/%2)").arg(text().size()).arg(MaximumIntroduction));
    Q_EMIT textChanged();
}
