#include "feedback/rating/SentRating.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QUrl>

#include "feedback/widgets/SentPreview.h"
#include "net/LoggedAddress.h"

namespace {

QString translated(const char* text) {
    return QCoreApplication::translate("ApplyScoreDialog", text);
}

}  // namespace

QString SentRating::introduction() {
    return translated(
               QT_TRANSLATE_NOOP("ApplyScoreDialog",
                                 "When you press “Submit”, this goes to %1, together with the time and a "
                                 "signature. Files go to the storage that this service names. Names of you "
                                 "and of your computer are taken out of the configuration."))
        .arg(loggedAddress(QUrl(ReportAccess::current().baseUrl)));
}

QVector<SentPart> SentRating::parts(const AppScoreRequest& request, const BottleVersions& versions,
                                    const QString& suggestion, const LogUpload::Copies& copies) {
    AppScoreRequest shown = request;
    if (copies)
        shown.cfgFileKey = QStringLiteral("…");  // known only after the upload
    QNetworkRequest headers = ReportAccess::current().request({});
    ReportAccess::addVersions(versions, &headers);
    QVector<SentPart> parts{{translated(QT_TRANSLATE_NOOP("ApplyScoreDialog", "Rating")),
                             QString::fromUtf8(QJsonDocument(shown.body()).toJson(QJsonDocument::Indented)),
                             {},
                             {}},
                            {translated(QT_TRANSLATE_NOOP("ApplyScoreDialog", "About this computer")),
                             ReportAccess::headersText(headers),
                             {},
                             {}}};
    if (!suggestion.trimmed().isEmpty())
        parts += {translated(QT_TRANSLATE_NOOP("ApplyScoreDialog", "Suggestion")), suggestion, {}, {}};
    if (copies) {
        for (const QFileInfo& file : QDir(copies->path()).entryInfoList(QDir::Files, QDir::Name))
            parts += {file.fileName(), {}, {}, file.filePath()};
    }
    return parts;
}
