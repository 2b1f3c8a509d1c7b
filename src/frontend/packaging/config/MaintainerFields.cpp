#include "packaging/config/MaintainerFields.h"

#include <QHBoxLayout>
#include <QRegularExpressionValidator>

#include "backend/InBackground.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"
#include "packaging/config/PackageMaintainer.h"

using namespace Fenk;

namespace {

constexpr int MaximumLength = 100;

}  // namespace

MaintainerFields::MaintainerFields(QWidget* parent)
    : QWidget(parent), m_name(new LineEdit), m_address(new LineEdit) {
    const PackageMaintainer known = PackageMaintainer::current();
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    const auto add = [this, layout](LineEdit* edit, const char* name, const QString& sample,
                                    const QString& text) {
        edit->setObjectName(name);
        edit->setAccessibleName(name);
        edit->setPlaceholderText(sample);
        edit->lineEdit()->setMaxLength(MaximumLength);
        edit->lineEdit()->setValidator(new QRegularExpressionValidator(QRegularExpression("[^<>]*"), this));
        edit->setText(text);
        layout->addWidget(edit, 1, Qt::AlignTop);
    };
    add(m_name, "package_maintainer_name", tr("Your name"), known.name);
    add(m_address, "package_maintainer_address", tr("Your e-mail address"), known.address);
    setFocusProxy(m_name);
    if (!known.name.isEmpty() || PackageMaintainer::isGiven())
        return;
    inBackground(this, &PackageMaintainer::accountName, [this](const QString& name) {
        if (!m_name->lineEdit()->isModified())
            m_name->setText(name);
    });
}

QString MaintainerFields::addressError() const {
    return m_address->text().isEmpty() || PackageMaintainer::isAddress(m_address->text())
               ? QString()
               : tr("Your input is not a valid e-mail address");
}

void MaintainerFields::remember() const {
    PackageMaintainer{m_name->text().trimmed(), m_address->text()}.remember();
}
