#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

/// What a package is: pkgcfg/pkginfo.json in the directory of the bottle, which the packing script reads.
struct PackageInfo {
    Q_DECLARE_TR_FUNCTIONS(AppConfigDialog)

public:
    static constexpr int MaximumNameLength = 50;    ///< characters of appName
    static constexpr int MaximumFieldLength = 200;  ///< characters of packageName and version
    static constexpr int MaximumFileName = 255;     ///< bytes of the package's file name

    QString appName;
    QString packageName;
    QString version;
    QString description;
    QString category;
    QStringList architectures{"amd64", "arm64"};

    /// The words of the categories, as they are stored.
    static QStringList categories();
    static QString categoryText(const QString& word);  ///< in the user's language

    /// What may be typed, more narrowly than what is accepted.
    static QRegularExpression typedPackageName();
    static QRegularExpression typedVersion();

    /// Why a text is refused, in the user's language; empty when it is accepted.
    static QString packageNameError(const QString& text);
    static QString versionError(const QString& text);
    QString fileNameError() const;  ///< of name and version together
    /// What speaks against a name that is accepted; empty without a doubt.
    static QString packageNameWarning(const QString& text);

    /// Unknown architectures and values of other types are left out; a category that is none reads as empty.
    static PackageInfo fromJson(const QJsonObject& object);
    QJsonObject toJson() const;
};
