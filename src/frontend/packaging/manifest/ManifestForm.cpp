#include "packaging/manifest/ManifestForm.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

namespace {

bool matches(const char* pattern, const QString& text) {
    return QRegularExpression(pattern).match(text).hasMatch();
}

}  // namespace

const QVector<ManifestForm::Member>& ManifestForm::members() {
    static const QVector<Member> all = {{"bottlesName", &ManifestForm::bottle},
                                        {"programUuid", &ManifestForm::programUuid},
                                        {"name", &ManifestForm::name},
                                        {"introduction", &ManifestForm::introduction},
                                        {"downloadUrl", &ManifestForm::downloadUrl},
                                        {"packageSize", &ManifestForm::packageSize},
                                        {"contributor", &ManifestForm::contributor},
                                        {"contributorEmail", &ManifestForm::contributorEmail},
                                        {"category", &ManifestForm::category}};
    return all;
}

QString ManifestForm::toServiceText() const {
    // QJsonObject would sort the keys.
    QByteArray text;
    for (const auto& [key, value] : members()) {
        const QJsonObject member{{key, this->*value}};
        text += (text.isEmpty() ? "" : ",") +
                QJsonDocument(member).toJson(QJsonDocument::Compact).mid(1).chopped(1);
    }
    return QString::fromUtf8('{' + text + '}');
}

QString ManifestForm::textForModeration() const {
    return QString("%1\n%2\n%3").arg(name, introduction, contributor);
}

namespace ManifestFormRules {

const char WebAddressPattern[] = "^(http|https)://.*";
const char MegabytesPattern[] = "^[0-9]{1,9}(\\.[0-9]{1,3})?$";
const char EmailPattern[] = "^[a-zA-Z0-9._%+-]+@[a-zA-Z0-9.-]+\\.[a-zA-Z]{2,}$";

Problem problemOf(const ManifestForm& form) {
    for (const ManifestForm::Member& member : ManifestForm::members()) {
        if ((form.*member.value).trimmed().isEmpty())
            return Problem::Missing;
    }
    const QUrl address(form.downloadUrl, QUrl::TolerantMode);
    if (!matches(WebAddressPattern, form.downloadUrl) || !address.isValid() || address.host().isEmpty())
        return Problem::WebAddress;
    if (!matches(MegabytesPattern, form.packageSize))
        return Problem::Megabytes;
    return matches(EmailPattern, form.contributorEmail) ? Problem::None : Problem::Email;
}

bool isTemporary(const QString& url) {
    for (const char* mark : {"timestamp=", "auth_key=", "x-sid=", "x-redirect="}) {
        if (url.contains(QLatin1String(mark)))
            return true;
    }
    return false;
}

}  // namespace ManifestFormRules
