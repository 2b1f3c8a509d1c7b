#include "feedback/dialogs/FeedbackForm.h"

#include <QJsonArray>
#include <QRegularExpression>

QJsonObject FeedbackForm::body(const QStringList& images, const QJsonObject& hardware,
                               const QString& logs) const {
    return {{"issueTypes", QJsonArray::fromStringList(issueTypes)},
            {"issueDesc", description},
            {"appName", appName},
            {"appVersion", appVersion},
            {"downUrl", downloadUrl},
            {"imgKeys", QJsonArray::fromStringList(images)},
            {"contactInfo", contact},
            {"hardwareInfo", hardware},
            {"logFileKey", logs}};
}

bool FeedbackRules::isContact(const QString& text) {
    static const QRegularExpression email(R"(^\w+([-+.']\w+)*@\w+([-.]\w+)*\.\w+([-.]\w+)*$)");
    static const QRegularExpression phone(
        R"(^(?:([\+]\d{1,4})[-.\s]?)?(?:[(](\d{1,3})[)][-.\s]?)?(\d{1,4})[-.\s]?(\d{1,4})[-.\s]?(\d{1,9})$)");
    return text.isEmpty() || email.match(text).hasMatch() || phone.match(text).hasMatch();
}

FeedbackRules::Problem FeedbackRules::problemOf(const FeedbackForm& form, bool needsType, Images images) {
    if (needsType && form.issueTypes.isEmpty())
        return Problem::NoType;
    if (form.description.trimmed().isEmpty())
        return Problem::NoDescription;
    if (form.description.size() > MaximumDescription)
        return Problem::LongDescription;
    if (images == Images::Failed)
        return Problem::ImageFailed;
    return images == Images::UnderWay ? Problem::ImageUnderWay : Problem::None;
}
