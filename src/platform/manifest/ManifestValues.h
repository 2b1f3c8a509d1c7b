#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "manifest/Manifest.h"

/// The forms of single values that reader and writer share.
namespace ManifestValues {

struct RegistryTypeName {
    const char* name;
    Manifest::RegistryValue::Type type;
};
/// "REG_SZ" and so on, and "delete".
extern const RegistryTypeName RegistryTypes[7];

/// "HKCU\x" and "HKEY_CURRENT_USER\x" become the latter; nothing for other hives and for invalid keys.
std::optional<QString> registryKey(const QString& given);

/// Decimal, or hexadecimal behind "0x".
std::optional<quint64> number(const QString& text);
/// Pairs of hexadecimal digits; blanks, line ends and commas may stand between them.
std::optional<QByteArray> bytes(const QString& text);
/// Base64 of RFC 4648; line ends and blanks may stand in it.
std::optional<QByteArray> base64(const QString& text);

/// Whether a file's content may stand as text in a manifest: UTF-8 whose only control characters are line
/// feeds and tabs.
bool isText(const QByteArray& content);
/// Whether a text has no control characters but those that are allowed, and no code points that are never
/// characters.
bool hasOnlyAllowed(const QString& text, const char* allowed);

}  // namespace ManifestValues
