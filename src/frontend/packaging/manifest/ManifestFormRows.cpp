#include "packaging/manifest/ManifestFormRows.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QRegularExpressionValidator>

#include "backend/ProgramRecord.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "packaging/manifest/CategoryChoice.h"
#include "packaging/manifest/IntroductionEdit.h"
#include "programs/ProgramIcons.h"
#include "widgets/LimitedTextEdit.h"

using namespace Fenk;
using ManifestFormRules::MaximumAddress;
using ManifestFormRules::MaximumName;

namespace {

constexpr int LogoEdge = 72;

enum class Kind { Text, Logo, Introduction, Category };

const struct Row {
    Kind kind;
    const char* objectName;
    const char* label;
    const char* placeholder;
    QString ManifestForm::*value;
    int maximum;
    const char* validator;  ///< null: any text can be typed
} Rows[] = {
    {Kind::Text, "export_name", QT_TRANSLATE_NOOP("ExportYamlDialog", "App name:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "Please enter the name of the app"), &ManifestForm::name,
     MaximumName, nullptr},
    {Kind::Logo, "export_logo", QT_TRANSLATE_NOOP("ExportYamlDialog", "App logo:"), "", nullptr, 0, nullptr},
    {Kind::Introduction, "export_introduction", QT_TRANSLATE_NOOP("ExportYamlDialog", "App introduction:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "The introduction of the app, limited to 100 characters"), nullptr,
     0, nullptr},
    {Kind::Category, "export_category", QT_TRANSLATE_NOOP("ExportYamlDialog", "App category:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "Select category"), nullptr, 0, nullptr},
    {Kind::Text, "export_url", QT_TRANSLATE_NOOP("ExportYamlDialog", "Download URL:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "Download url of the app, for review your app"),
     &ManifestForm::downloadUrl, MaximumAddress, ManifestFormRules::WebAddressPattern},
    {Kind::Text, "export_size", QT_TRANSLATE_NOOP("ExportYamlDialog", "Package size:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "The size of the app package, units: MB"),
     &ManifestForm::packageSize, MaximumName, ManifestFormRules::MegabytesPattern},
    {Kind::Text, "export_contributor", QT_TRANSLATE_NOOP("ExportYamlDialog", "Contributor name:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "Please enter your nickname"), &ManifestForm::contributor,
     MaximumName, nullptr},
    {Kind::Text, "export_email", QT_TRANSLATE_NOOP("ExportYamlDialog", "Contributor email:"),
     QT_TRANSLATE_NOOP("ExportYamlDialog", "Please enter your email"), &ManifestForm::contributorEmail,
     MaximumName, nullptr},
};

QString translated(const char* text) {
    return QCoreApplication::translate("ExportYamlDialog", text);
}

/// Takes a pasted text without the blanks around it, which would be refused.
class TrimmingValidator : public QRegularExpressionValidator {
public:
    using QRegularExpressionValidator::QRegularExpressionValidator;

    State validate(QString& input, int& position) const override {
        input = input.trimmed();
        position = qMin(position, input.size());
        return QRegularExpressionValidator::validate(input, position);
    }
};

void warnOfTemporary(LineEdit* edit) {
    if (ManifestFormRules::isTemporary(edit->text()))
        edit->showAlertMessage(translated(
            QT_TRANSLATE_NOOP("ExportYamlDialog", "This appears to be a temporary URL that may expire")));
    else
        edit->hideAlertMessage();
}

}  // namespace

ManifestFormRows::ManifestFormRows(QWidget* parent) : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(Tokens::Space16);
    grid->setVerticalSpacing(Tokens::Space12);
    grid->setColumnStretch(1, 1);
    for (int i = 0; i < int(std::size(Rows)); ++i) {
        QWidget* control = makeControl(i);
        auto* label = new Label(translated(Rows[i].label), Label::Body);
        // At the height of the first line of whatever stands beside it.
        label->setFixedHeight(Tokens::ControlHeight);
        label->setBuddy(control);
        grid->addWidget(label, i, 0, Qt::AlignTop);
        grid->addWidget(control, i, 1, control == m_logo ? Qt::AlignLeft : Qt::Alignment());
    }
    setFocusProxy(m_fields.first().edit);
    connect(ProgramIcons::instance(), &ProgramIcons::ready, this, [this](const QString& file) {
        if (file == m_logoFile)
            showLogo();
    });
    showLogo();
}

QWidget* ManifestFormRows::makeControl(int row) {
    const Row& facts = Rows[row];
    const QString label = translated(facts.label);
    const QString placeholder = translated(facts.placeholder);
    if (facts.kind == Kind::Logo) {
        m_logo = new QLabel;
        m_logo->setObjectName(facts.objectName);
        m_logo->setFixedSize(LogoEdge, LogoEdge);
        m_logo->setAlignment(Qt::AlignCenter);
        m_logo->setAccessibleName(label);
        return m_logo;
    }
    if (facts.kind == Kind::Introduction) {
        m_introduction = new IntroductionEdit;
        m_introduction->edit()->setObjectName(facts.objectName);
        m_introduction->edit()->setAccessibleName(label);
        m_introduction->edit()->setPlaceholderText(placeholder);
        connect(m_introduction, &IntroductionEdit::textChanged, this, &ManifestFormRows::changed);
        return m_introduction;
    }
    if (facts.kind == Kind::Category) {
        m_category = new CategoryChoice(placeholder);
        m_category->setObjectName(facts.objectName);
        m_category->setAccessibleName(label);
        connect(m_category, qOverload<int>(&QComboBox::currentIndexChanged), this,
                &ManifestFormRows::changed);
        return m_category;
    }
    return makeLine(row);
}

QWidget* ManifestFormRows::makeLine(int row) {
    const Row& facts = Rows[row];
    auto* edit = new LineEdit;
    edit->lineEdit()->setObjectName(facts.objectName);
    edit->lineEdit()->setMaxLength(facts.maximum);
    edit->setAccessibleName(translated(facts.label));
    edit->setPlaceholderText(translated(facts.placeholder));
    if (facts.validator)
        edit->lineEdit()->setValidator(new TrimmingValidator(QRegularExpression(facts.validator), edit));
    if (facts.value == &ManifestForm::downloadUrl) {
        connect(edit, &LineEdit::textChanged, this, [edit] { warnOfTemporary(edit); });
        // There is always room for the warning, so that nothing moves when it comes or goes.
        edit->layout()->setAlignment(Qt::AlignTop);
        edit->setFixedHeight(Tokens::ControlHeight + Tokens::Space4 +
                             QFontMetrics(Theme::instance()->font(Theme::Small)).height());
    }
    connect(edit, &LineEdit::textChanged, this, &ManifestFormRows::changed);
    m_fields.append({edit, facts.value});
    return edit;
}

ManifestForm ManifestFormRows::values() const {
    ManifestForm form;
    for (const Field& field : m_fields)
        form.*field.value = field.edit->text().trimmed();
    form.introduction = m_introduction->text().trimmed();
    form.category = m_category->category();
    return form;
}

void ManifestFormRows::propose(const ManifestForm& form) {
    for (const Field& field : qAsConst(m_fields)) {
        if (field.edit->text().isEmpty())
            field.edit->setText(form.*field.value);
    }
    if (m_introduction->text().isEmpty())
        m_introduction->edit()->setPlainText(form.introduction);
    m_category->propose(form.category);
}

void ManifestFormRows::setLogo(const QString& file) {
    m_logoFile = file;
    showLogo();
}

void ManifestFormRows::showLogo() {
    const int edge = qRound(LogoEdge * devicePixelRatioF());
    QPixmap picture;
    if (!m_logoFile.isEmpty())
        picture = ProgramIcons::instance()->picture(m_logoFile, edge);
    if (!picture.isNull())
        picture.setDevicePixelRatio(devicePixelRatioF());
    else
        picture = Theme::icon(ProgramRecord::iconFallback()).pixmap(window()->windowHandle(), m_logo->size());
    m_logo->setPixmap(picture);
}
