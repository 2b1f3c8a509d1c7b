#include "shell/configuration/fonts/FontReplaceDialog.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/fonts/FontNames.h"
#include "shell/configuration/tables/CompletingCombo.h"

using namespace Fenk;

namespace {

constexpr int ComboWidth = 200;

QComboBox* makeCombo(const QString& name, const QString& word, const QStringList& fonts) {
    auto* combo = new QComboBox;
    combo->setObjectName(name);
    combo->setAccessibleName(word);
    combo->setFixedWidth(ComboWidth);
    makeCompleting(combo, fonts);
    return combo;
}

}  // namespace

FontReplaceDialog::FontReplaceDialog(QWidget* parent)
    : AbstractDialog(parent),
      m_windows(makeCombo("windows_font_combobox", tr("Windows font"), FontNames::ofWindows())),
      m_linux(makeCombo("linux_font_combobox", tr("Font of this machine"), FontNames::ofSystem())),
      m_ok(new QPushButton) {
    setObjectName("fontreplacement_add_dialog");
    setAttribute(Qt::WA_DeleteOnClose);
    setTitle(tr("Replace a font"));
    m_ok->setObjectName("ok_btn");
    m_ok->setIcon(QIcon(new SymbolicIconEngine(QString(":/images/checked.svg"))));
    m_ok->setAccessibleName(tr("Replace a font"));
    m_ok->setToolTip(tr("Replace a font"));
    m_ok->setDefault(true);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space24, Tokens::Space24);
    row->setSpacing(Tokens::Space12);
    row->addWidget(new Label(tr("Replace")));
    row->addWidget(m_windows);
    row->addWidget(new Label(tr("to")));
    row->addWidget(m_linux);
    row->addWidget(m_ok);
    bodyLayout()->addLayout(row);
    const auto refresh = [this] { m_ok->setEnabled(!windowsFont().isEmpty() && !replacement().isEmpty()); };
    for (QComboBox* combo : {m_windows, m_linux})
        connect(combo, &QComboBox::editTextChanged, this, refresh);
    m_linux->setCurrentIndex(m_linux->findText(FontNames::defaultReplacement()));
    refresh();
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::finished, this, &FontReplaceDialog::closedlg);
    m_windows->setFocus();
}

QString FontReplaceDialog::windowsFont() const {
    return m_windows->currentText().trimmed();
}

QString FontReplaceDialog::replacement() const {
    return m_linux->currentText().trimmed();
}
