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
      m_logs(new QCheckBox(hasService ? tr("Send the logs") : tr("Save the logs"))),
      m_preview(new SentPreview) {
    m_text->setWordWrap(true);
    const QString address = loggedAddress(QUrl(ReportAccess::current().baseUrl));
    m_text->setText(hasService
                        ? tr("When you press “Submit”, this goes to %1, together with the time and a "
                             "signature. Your home directory and your user name are taken out of the logs.")
                              .arg(address)
                        : tr("This goes into the file that you save; nothing is sent. Your home directory "
                             "and your user name are taken out of the logs."));
    m_logs->setObjectName("feedback_sendlogs");
    m_logs->setAccessibleName(m_logs->text());
    m_logs->setChecked(hasLogs);
    m_logs->setVisible(hasLogs);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_text);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_logs);
    setFocusProxy(m_preview);
    connect(m_logs, &QCheckBox::toggled, this, &SentPage::changed);
}

bool SentPage::takesLogs() const {
    return m_logs->isChecked();
}

void SentPage::update(const FeedbackForm& form, const ReportFacts& facts, const ImageUploads& uploads) {
    const bool hasLogs = takesLogs() && facts.logs();
    QVector<SentPart> parts;
    QStringList copies;
    QVector<SentPart> pictures;
    for (const ImageUploads::Image& image : uploads.images()) {
        if (m_hasService && image.state == ImageUploads::State::Failed)
            continue;
        copies += image.picture.copy;
        pictures += {tr("Picture %1").arg(pictures.size() + 1),
                     tr("This picture is too large to be shown: %1").arg(image.picture.name),
                     image.picture.thumbnail,
                     {}};
    }
    if (m_hasService) {
        // The key of the archive is known only after its upload.
        const QString logs = hasLogs ? QStringLiteral("…") : QString();
        parts += {tr("Report"), indented(form.body(uploads.keys(), facts.hardware(), logs)), {}, {}};
        parts += {tr("About this computer"),
                  tr("Goes with each request, also with the one for the problem types:") + "\n\n" +
                      ReportAccess::headersText(requestOf(facts)),
                  {},
                  {}};
    } else {
        parts += {QStringLiteral("report.json"), savedReport(form, facts, copies, hasLogs), {}, {}};
    }
    parts += pictures;
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
