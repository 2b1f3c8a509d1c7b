#include "bottleservice/settings/RegistryChange.h"

#include <QTextCodec>

#include "manifest/SettingRules.h"

namespace {

const char Overrides[] = "HKEY_CURRENT_USER\\Software\\Wine\\DllOverrides";
const char Replacements[] = "HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements";

QString quoted(QString text) {
    return '"' + text.replace('\\', "\\\\").replace('"', "\\\"") + '"';
}

QString entry(const QString& key, const QString& name, const QString& value) {
    return QString("[%1]\n").arg(key) + quoted(name) + '=' + value + "\n\n";
}

QString dword(quint32 number) {
    return QString("dword:%1").arg(number, 8, 16, QChar('0'));
}

QString hexadecimal(const char* type, const QByteArray& bytes) {
    return type + QString::fromLatin1(bytes.toHex(','));
}

/// The texts in UTF-16, little-endian, each with its null character.
QByteArray utf16(const QStringList& texts) {
    QByteArray bytes;
    for (const QString& text : texts) {
        for (const QChar c : text)
            bytes.append(char(c.unicode() & 0xff)).append(char(c.unicode() >> 8));
        bytes.append(2, '\0');
    }
    return bytes;
}

QByteArray littleEndian(quint64 number) {
    QByteArray bytes;
    for (int i = 0; i < 8; ++i)
        bytes += char(number >> (8 * i));
    return bytes;
}

/// The data of a value as a .reg file has it. Numbers in "hex(...)" are those of the registry's types.
QString dataOf(const Manifest::RegistryValue& value) {
    using Type = Manifest::RegistryValue::Type;
    switch (value.type) {
        case Type::Text:
            return hexadecimal("hex(1):", utf16(value.texts));
        case Type::ExpandText:
            return hexadecimal("hex(2):", utf16(value.texts));
        case Type::Texts:
            return hexadecimal("hex(7):", utf16(value.texts + QStringList(QString())));
        case Type::Number:
            return dword(quint32(value.number));
        case Type::LongNumber:
            return hexadecimal("hex(b):", littleEndian(value.number));
        case Type::Bytes:
            return hexadecimal("hex:", value.bytes);
        case Type::Deleted:
            break;
    }
    return "-";
}

/// An unescaped line end would begin another entry.
bool isOneLine(const QString& text) {
    return !text.contains('\n') && !text.contains('\r') && !text.contains(QChar(0));
}

}  // namespace

// Wine reads the first value; the second is for programs that read it.
RegistryChange RegistryChange::dpi(int dpi) {
    const QString value = dword(quint32(dpi));
    RegistryChange change;
    change.m_entries = entry("HKEY_CURRENT_USER\\Control Panel\\Desktop", "LogPixels", value) +
                       entry("HKEY_CURRENT_CONFIG\\Software\\Fonts", "LogPixels", value);
    return change;
}

RegistryChange RegistryChange::fontReplacement(const QString& font, const QString& replacement) {
    RegistryChange change;
    change.m_entries = entry(Replacements, font, quoted(replacement));
    return change;
}

RegistryChange RegistryChange::noFontReplacement(const QString& font) {
    RegistryChange change;
    change.m_entries = entry(Replacements, font, "-");
    return change;
}

RegistryChange RegistryChange::dllOverride(const QString& dll, const QString& method) {
    RegistryChange change;
    change.m_entries = entry(Overrides, SettingRules::moduleName(dll), quoted(method));
    return change;
}

RegistryChange RegistryChange::noDllOverride(const QString& dll) {
    RegistryChange change;
    change.m_entries = entry(Overrides, SettingRules::moduleName(dll), "-");
    return change;
}

RegistryChange RegistryChange::windowsVersion(const QString& code) {
    RegistryChange change;
    change.m_windows = code;
    return change;
}

RegistryChange RegistryChange::windows11OverWindows10() {
    const char key[] = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion";
    RegistryChange change;
    change.m_entries = entry(key, "CurrentBuild", quoted("22000")) +
                       entry(key, "CurrentBuildNumber", quoted("22000")) +
                       entry(key, "ProductName", quoted("Microsoft Windows 11"));
    return change;
}

RegistryChange RegistryChange::text(const QString& key, const QString& name, const QString& value) {
    RegistryChange change;
    if (isOneLine(key + name + value) && key.startsWith("HKEY_"))
        change.m_entries = entry(key, name, quoted(value));
    return change;
}

RegistryChange RegistryChange::number(const QString& key, const QString& name, quint32 value) {
    RegistryChange change;
    if (isOneLine(key + name) && key.startsWith("HKEY_"))
        change.m_entries = entry(key, name, dword(value));
    return change;
}

RegistryChange RegistryChange::value(const Manifest::RegistryValue& value) {
    RegistryChange change;
    if (isOneLine(value.key + value.name))
        change.m_entries = value.name.isEmpty() ? QString("[%1]\n@=%2\n\n").arg(value.key, dataOf(value))
                                                : entry(value.key, value.name, dataOf(value));
    return change;
}

RegistryChange RegistryChange::fromJson(const QJsonObject& object) {
    RegistryChange change;
    change.m_entries = object["registry"].toString();
    change.m_windows = object["windows"].toString();
    return change;
}

QJsonObject RegistryChange::toJson() const {
    return {{"registry", m_entries}, {"windows", m_windows}};
}

RegistryChange RegistryChange::then(const RegistryChange& other) const {
    RegistryChange both;
    both.m_entries = m_entries + other.m_entries;
    both.m_windows = other.m_windows.isEmpty() ? m_windows : other.m_windows;
    return both;
}

QByteArray RegistryChange::file() const {
    const QString text = "Windows Registry Editor Version 5.00\n\n" + m_entries;
    QTextEncoder encoder(QTextCodec::codecForName("UTF-16LE"), QTextCodec::IgnoreHeader);
    return QByteArray("\xff\xfe", 2) + encoder.fromUnicode(QString(text).replace('\n', "\r\n"));
}
