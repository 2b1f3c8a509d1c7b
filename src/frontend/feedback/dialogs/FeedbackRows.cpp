#include "feedback/dialogs/FeedbackRows.h"

#include <QGridLayout>
#include <QPlainTextEdit>

#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/IssueTypeChoice.h"
#include "feedback/dialogs/UploadedImages.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;
using namespace FeedbackRules;

namespace {

constexpr int DescriptionHeight = 96;

void propose(LineEdit* field, const QString& text) {
    if (field->text().isEmpty())
        field->setText(text.simplified());
}

}  // namespace

FeedbackRows::FeedbackRows(ImageUploads* uploads, bool hasService, QWidget* parent)
    : QWidget(parent),
      m_grid(new QGridLayout(this)),
      m_types(new IssueTypeChoice),
      m_description(new QPlainTextEdit),
      m_appName(makeLine("feedback_appname", MaximumName)),
      m_appVersion(makeLine("feedback_appversion", MaximumName)),
      m_downloadUrl(makeLine("feedback_downloadurl", MaximumAddress)),
      m_images(new UploadedImages(uploads)),
      m_contact(makeLine("feedback_contact", MaximumName)) {
    m_grid->setContentsMargins(0, Tokens::RingExtent, Tokens::ScrollBarExtent, Tokens::RingExtent);
    m_grid->setHorizontalSpacing(Tokens::Space16);
    m_grid->setVerticalSpacing(Tokens::Space12);
    m_grid->setColumnStretch(1, 1);
    m_description->setObjectName("feedback_description");
    m_description->setTabChangesFocus(true);
    m_description->setFixedHeight(DescriptionHeight);
    m_description->setPlaceholderText(tr("Briefly describe the problem that occurs of operation"));
    m_contact->setPlaceholderText(tr("Email or phone number"));
    // There is always room for the alert, so that nothing moves when it comes or goes.
    m_contact->layout()->setAlignment(Qt::AlignTop);
    m_contact->setFixedHeight(Tokens::ControlHeight + Tokens::Space4 +
                              QFontMetrics(Theme::instance()->font(Theme::Small)).height());
    QString imagesTip = tr("Can transfer up to 9 files, single file is less than 2M. (jpg, jpeg, png, gif)");
    if (hasService) {
        addRow(tr("Problem Type:"), m_types);
        imagesTip += '\n' + tr("A picture is uploaded as soon as you have chosen it. One that you remove "
                               "stays at the service.");
    } else {
        m_types->setParent(this);
        m_types->hide();
    }
    addRow(tr("Problem Description:"), m_description,
           tr("You describe the more accurately, we can more accurately locate the problem"));
    addRow(tr("Application Name:"), m_appName);
    addRow(tr("Version:"), m_appVersion);
    addRow(tr("Download URL:"), m_downloadUrl);
    addRow(tr("Screenshot:"), m_images, imagesTip);
    addRow(tr("Contact:"), m_contact);
    m_grid->setRowStretch(m_grid->rowCount(), 1);
    setFocusProxy(m_description);
    connect(m_types, &IssueTypeChoice::changed, this, &FeedbackRows::changed);
    connect(m_description, &QPlainTextEdit::textChanged, this, &FeedbackRows::changed);
    for (const LineEdit* field : {m_appName, m_appVersion, m_downloadUrl, m_contact})
        connect(field, &LineEdit::textChanged, this, &FeedbackRows::changed);
}

LineEdit* FeedbackRows::makeLine(const char* objectName, int maximum) {
    auto* edit = new LineEdit;
    edit->lineEdit()->setObjectName(objectName);
    edit->lineEdit()->setMaxLength(maximum);
    return edit;
}

void FeedbackRows::addRow(const QString& text, QWidget* control, const QString& tip) {
    const int row = m_grid->rowCount();
    auto* label = new Label(text, Label::Body);
    // At the height of the first line of whatever stands beside it.
    label->setFixedHeight(Tokens::ControlHeight);
    label->setBuddy(control);
    m_grid->addWidget(label, row, 0, Qt::AlignTop);
    if (auto* edit = qobject_cast<LineEdit*>(control))
        edit->setAccessibleName(text);
    else
        control->setAccessibleName(text);
    if (tip.isEmpty()) {
        m_grid->addWidget(control, row, 1);
        return;
    }
    control->setAccessibleDescription(tip);
    auto* words = new Label(tip, Label::Small);
    words->setTextRole(Theme::Secondary);
    words->setWordWrap(true);
    auto* column = new QVBoxLayout;
    column->setSpacing(Tokens::Space4);
    column->addWidget(control);
    column->addWidget(words);
    m_grid->addLayout(column, row, 1);
}

FeedbackForm FeedbackRows::form() const {
    FeedbackForm form;
    form.issueTypes = m_types->chosen();
    form.description = m_description->toPlainText().trimmed();
    form.appName = m_appName->text().trimmed();
    form.appVersion = m_appVersion->text().trimmed();
    form.downloadUrl = m_downloadUrl->text().trimmed();
    form.contact = m_contact->text().trimmed();
    return form;
}

void FeedbackRows::proposeAppName(const QString& name) {
    propose(m_appName, name);
}

void FeedbackRows::proposeAppVersion(const QString& version) {
    propose(m_appVersion, version);
}

void FeedbackRows::proposeDownloadUrl(const QString& url) {
    propose(m_downloadUrl, url);
}

QWidget* FeedbackRows::description() const {
    return m_description;
}
