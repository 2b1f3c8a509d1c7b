#pragma once

#include <QString>
#include <QVector>

/// What a user says of a program whose bottle is exported as a manifest, as typed.
struct ManifestForm {
    QString bottle;
    QString programUuid;
    QString name;
    QString introduction;
    QString downloadUrl;
    QString packageSize;  ///< in MB
    QString contributor;
    QString contributorEmail;
    QString category;

    struct Member {
        const char* key;  ///< in JSON
        QString ManifestForm::*value;
    };
    /// In the order of these fields.
    static const QVector<Member>& members();

    /// The argument of dumpManifest: one JSON object with the values in the order of these fields.
    QString toServiceText() const;
    /// What is checked before others can read it.
    QString textForModeration() const;
};

namespace ManifestFormRules {

/// Characters.
constexpr int MaximumIntroduction = 100;
constexpr int MaximumName = 255;  ///< what a manifest takes (docs/MANIFEST.md)
constexpr int MaximumAddress = 4096;

extern const char WebAddressPattern[];  ///< regular expressions
extern const char MegabytesPattern[];
extern const char EmailPattern[];

enum class Problem { None, Missing, WebAddress, Megabytes, Email };
/// What keeps a form from being exported: a value that is empty, or the first that breaks its rule.
Problem problemOf(const ManifestForm& form);

/// Whether an address looks like one that was made for a single download.
bool isTemporary(const QString& url);

}  // namespace ManifestFormRules
