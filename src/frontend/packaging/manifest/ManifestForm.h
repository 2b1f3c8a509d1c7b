#pragma once

#include <QString>

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

    /// The argument of dumpManifest: one JSON object with the values in the order of these fields.
    QString toServiceText() const;
    /// What is checked before others can read it.
    QString textForModeration() const;
};

namespace ManifestFormRules {

constexpr int MaximumIntroduction = 100;  ///< characters

extern const char WebAddress[];  ///< regular expressions
extern const char Megabytes[];
extern const char Email[];

/// Whether the form can be exported: no value is empty or breaks its rule.
bool isComplete(const ManifestForm& form);

/// Whether an address looks like one that was made for a single download.
bool isTemporary(const QString& url);

/// The text, cut where needed, of at most MaximumIntroduction characters.
QString cutIntroduction(const QString& text);

}  // namespace ManifestFormRules
