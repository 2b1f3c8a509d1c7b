#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// What a user reports, as typed and chosen.
struct FeedbackForm {
    QStringList issueTypes;  ///< ids
    QString description;
    QString appName;
    QString appVersion;
    QString downloadUrl;
    QString contact;

    /// The report as the service takes it, before it is signed. `images` are the keys of uploaded pictures,
    /// `logs` is the key of the archive.
    QJsonObject body(const QStringList& images, const QJsonObject& hardware, const QString& logs) const;
};

namespace FeedbackRules {

constexpr int MaximumImages = 9;
constexpr qint64 MaximumImageBytes = 2097152;
/// Characters.
constexpr int MaximumDescription = 20000;
constexpr int MaximumName = 255;
constexpr int MaximumAddress = 4096;

/// Whether somebody can be reached there: an email address, a phone number, or nothing at all.
bool isContact(const QString& text);

/// What keeps a report from being sent. A report that is saved to a file needs no type, which only the
/// service knows.
enum class Problem { None, NoType, NoDescription, LongDescription, ImageUnderWay, ImageFailed };
enum class Images { Ready, UnderWay, Failed };
Problem problemOf(const FeedbackForm& form, bool needsType, Images images);

}  // namespace FeedbackRules
