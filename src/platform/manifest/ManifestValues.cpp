#include "manifest/ManifestValues.h"

#include <QTextCodec>
#include <algorithm>

#include "manifest/YamlTree.h"

namespace ManifestValues {

using Type = Manifest::RegistryValue::Type;

const RegistryTypeName RegistryTypes[7] = {
    {"REG_SZ", Type::Text},      {"REG_EXPAND_SZ", Type::ExpandText}, {"REG_MULTI_SZ", Type::Texts},
    {"REG_DWORD", Type::Number}, {"REG_QWORD", Type::LongNumber},     {"REG_BINARY", Type::Bytes},
    {"delete", Type::Deleted},
};

namespace {

constexpr int MaximumKeyCharacters = 1024;
constexpr int MaximumKeyPartCharacters = 255;
constexpr int MaximumTextIndicators = YamlTree::MaximumIndicators / 2;

/// YAML's writer puts U+FFFD in the place of these.
bool isNonCharacter(uint code) {
    return (code >= 0xfdd0 && code <= 0xfdef) || (code & 0xfffe) == 0xfffe;
}

}  // namespace

std::optional<QString> registryKey(const QString& given) {
    static const struct {
        const char* name;
        const char* full;
    } hives[] = {{"HKCU", "HKEY_CURRENT_USER"},
                 {"HKEY_CURRENT_USER", "HKEY_CURRENT_USER"},
                 {"HKLM", "HKEY_LOCAL_MACHINE"},
                 {"HKEY_LOCAL_MACHINE", "HKEY_LOCAL_MACHINE"}};
    const QStringList parts = given.split('\\');
    if (parts.size() < 2 || given.size() > MaximumKeyCharacters || !hasOnlyAllowed(given, ""))
        return std::nullopt;
    for (const QString& part : parts) {
        if (part.trimmed().isEmpty() || part.size() > MaximumKeyPartCharacters)
            return std::nullopt;
    }
    for (const auto& hive : hives) {
        if (parts.first().compare(QLatin1String(hive.name), Qt::CaseInsensitive) == 0)
            return hive.full + given.mid(parts.first().size());
    }
    return std::nullopt;
}

std::optional<quint64> number(const QString& text) {
    bool ok = false;
    const bool isHexadecimal = text.startsWith("0x", Qt::CaseInsensitive);
    const QString digits = isHexadecimal ? text.mid(2) : text;
    // Not what toULongLong() takes besides: signs and blanks.
    const bool isPlain = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c.unicode() < 128 && c.isLetterOrNumber();
    });
    const quint64 value = isPlain ? digits.toULongLong(&ok, isHexadecimal ? 16 : 10) : 0;
    return ok ? std::optional(value) : std::nullopt;
}

std::optional<QByteArray> bytes(const QString& text) {
    QByteArray digits;
    for (const QChar c : text) {
        const ushort code = c.unicode();
        if (code < 128 && isxdigit(code))
            digits += char(code);
        else if (!c.isSpace() && c != ',')
            return std::nullopt;
    }
    return digits.size() % 2 == 0 ? std::optional(QByteArray::fromHex(digits)) : std::nullopt;
}

std::optional<QByteArray> base64(const QString& text) {
    QByteArray plain;
    for (const QChar c : text) {
        if (c.unicode() >= 128)
            return std::nullopt;
        if (!c.isSpace())
            plain += char(c.unicode());
    }
    const auto result = QByteArray::fromBase64Encoding(
        plain, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    // Qt lets the padding be left out.
    return result && plain.size() % 4 == 0 ? std::optional(result.decoded) : std::nullopt;
}

bool isText(const QByteArray& content) {
    if (std::count_if(content.begin(), content.end(), YamlTree::isIndicator) > MaximumTextIndicators)
        return false;
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(content.constData(), content.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0 && hasOnlyAllowed(text, "\n\t") &&
           text.toUtf8() == content;
}

bool hasOnlyAllowed(const QString& text, const char* allowed) {
    const QString exceptions = QLatin1String(allowed);
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const uint code = isPair ? QChar::surrogateToUcs4(c, text[++i]) : c.unicode();
        const bool isControl = c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                               c == QChar::ParagraphSeparator || c == QChar(0xfeff);
        if (isNonCharacter(code) || (isControl && !exceptions.contains(c)))
            return false;
    }
    return true;
}

}  // namespace ManifestValues
