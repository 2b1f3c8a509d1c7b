#include "feedback/dialogs/SentPage.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QJsonDocument>
#include <QUrl>
#include <QVBoxLayout>

#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/ReportFacts.h"
#include "feedback/widgets/SentPreview.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "net/LoggedAddress.h"

using namespace Fenk;

namespace {

const char DeviceId[] = "X-Device-Id";
const char Feedback[] = "/store-common-report/wineAssist/feedback";

/// The product's own headers of the request that brings the report.
QNetworkRequest requestOf(const ReportFacts& facts) {
    QNetworkRequest request = ReportAccess::current().request(Feedback);
    ReportAccess::addVersions(facts.versions(), &request);
    return request;
}

QByteArray indented(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

}  // namespace

SentPage::SentPage(bool hasService, bool hasLogs, QWidget* parent)
    : QWidget(parent),
      m_hasService(hasService),
      m_text(new Label(Label::Secondary)),
      m_sent(new Label(Label::Secondary)),
      m_logs(new QCheckBox(hasService ? tr("Send the logs") : tr("Save the logs"))),
      m_preview(new SentPreview) {
    m_text->setWordWrap(true);
    m_sent->setObjectName("feedback_sentalready");
    m_sent->setWordWrap(true);
    m_sent->setVisible(hasService);
    m_logs->setObjectName("feedback_sendlogs");
    m_logs->setAccessibleName(m_logs->text());
    m_logs->setChecked(hasLogs);
    m_logs->setVisible(hasLogs);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_text);
    layout->addWidget(m_sent);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_logs);
    setFocusProxy(m_preview);
    connect(m_logs, &QCheckBox::toggled, this, &SentPage::changed);
}

bool SentPage::takesLogs() const {
    return m_logs->isChecked();
}

void SentPage::tellHow(const ImageUploads& uploads, bool canSave) {
    if (!m_hasService) {
        m_text->setText(
            tr("This goes into the file that you save; nothing is sent. Names of you and of your computer, "
               "and passwords in addresses, are taken out of the logs."));
        return;
    }
    const QString address = loggedAddress(QUrl(ReportAccess::current().baseUrl));
    QString text = tr("“Submit” sends this to %1, with the time and a signature; the logs go to a storage "
                      "that it names. Names of you and of your computer, and passwords in addresses, are "
                      "taken out of the logs.")
                       .arg(address);
    if (canSave)
        text += ' ' + tr("“Save Report…” writes report.json, the pictures and the logs into a file.");
    m_text->setText(text);
    m_sent->setText(uploads.hasBegunUpload()
                        ? tr("Sent already: “About this computer”, when the form was opened, and the "
                             "pictures. One that you remove stays at the service.")
                        : tr("Sent already: “About this computer”, when the form was opened."));
}

void SentPage::update(const FeedbackForm& form, const ReportFacts& facts, const ImageUploads& uploads,
                      bool canSave) {
    tellHow(uploads, canSave);
    const bool hasLogs = takesLogs() && facts.logs();
    QVector<SentPart> parts;
    if (m_hasService) {
        // The key of the archive is known only after its upload.
        const QString logs = hasLogs ? QStringLiteral("…") : QString();
        parts += {tr("Report"), indented(form.body(uploads.keys(), facts.hardware(), logs)), {}, {}};
        parts += {tr("About this computer"),
                  tr("Goes with each request: for the problem types, with the report, and for the address of "
                     "each upload, which also says “wineAssist”, what it is (“image” or “attach”) and how "
                     "its file's name ends. X-Wine-Ver, X-Windows-Ver and X-Simulator-Ver go with the report "
                     "only.") +
                      "\n\n" + ReportAccess::headersText(requestOf(facts)),
                  {},
                  {}};
    }
    if (!m_hasService || canSave)
        parts += {QStringLiteral("report.json"), savedReport(form, facts, uploads.copies(), hasLogs), {}, {}};
    int number = 0;
    for (const QString& copy : uploads.copies())
        parts += {tr("Picture %1").arg(++number), {}, copy, {}};
    if (hasLogs) {
        for (const QString& file : facts.logFiles())
            parts += {QFileInfo(file).fileName(), {}, {}, file};
    }
    m_preview->setParts(parts);
}

QByteArray savedReport(const FeedbackForm& form, const ReportFacts& facts, const QStringList& pictures,
                       bool hasLogs) {
    QStringList names;
    for (const QString& picture : pictures)
        names += "pictures/" + QFileInfo(picture).fileName();
    const QNetworkRequest request = requestOf(facts);
    QJsonObject headers;
    for (const QByteArray& name : request.rawHeaderList()) {
        if (name != DeviceId)
            headers.insert(QString::fromUtf8(name), QString::fromUtf8(request.rawHeader(name)));
    }
    return indented(
        {{"report", form.body(names, facts.hardware(), hasLogs ? "logs" : "")}, {"headers", headers}});
}
