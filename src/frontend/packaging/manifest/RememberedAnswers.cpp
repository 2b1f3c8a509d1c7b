#include "packaging/manifest/RememberedAnswers.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 64 * 1024;

const struct {
    const char* key;
    QString ManifestForm::*value;
} Members[] = {{"bottlesName", &ManifestForm::bottle},
               {"programUuid", &ManifestForm::programUuid},
               {"introduction", &ManifestForm::introduction},
               {"downloadUrl", &ManifestForm::downloadUrl},
               {"packageSize", &ManifestForm::packageSize},
               {"contributor", &ManifestForm::contributor},
               {"contributorEmail", &ManifestForm::contributorEmail},
               {"category", &ManifestForm::category}};

QString fileOf(const QString& bottlePath) {
    return bottlePath + "/dump-manifest.json";
}

}  // namespace

std::optional<ManifestForm> RememberedAnswers::read(const QString& bottlePath) {
    const QString path = fileOf(bottlePath);
    const QFileInfo info(path);
    if (bottlePath.isEmpty() || (!info.exists() && !info.isSymLink()))
        return std::nullopt;
    const auto text = Fenk::RegularFile::read(path, MaximumBytes);
    const QJsonDocument document = QJsonDocument::fromJson(text.value_or(QByteArray()));
    if (!document.isObject() || text->size() > MaximumBytes) {
        qWarning().noquote() << "no answers of an export in" << path;
        return std::nullopt;
    }
    ManifestForm form;
    for (const auto& [key, value] : Members)
        form.*value = document.object().value(QLatin1String(key)).toString();
    return form;
}

bool RememberedAnswers::write(const QString& bottlePath, const ManifestForm& form) {
    QJsonObject answers;
    for (const auto& [key, value] : Members)
        answers.insert(QLatin1String(key), form.*value);
    const QByteArray text = QJsonDocument(answers).toJson();
    QSaveFile file(fileOf(bottlePath));
    // A link would be followed, to wherever a program of the bottle has made it lead.
    const bool isOurs = !bottlePath.isEmpty() && !QFileInfo(file.fileName()).isSymLink();
    if (isOurs && file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    qWarning().noquote() << "can't write the answers of the export to" << file.fileName()
                         << file.errorString();
    return false;
}
