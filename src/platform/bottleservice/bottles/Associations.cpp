#include "bottleservice/bottles/Associations.h"

#include <QJsonDocument>
#include <QMimeDatabase>
#include <QRegularExpression>

#include "bottleservice/bottles/ExecutableRules.h"
#include "bottleservice/bottles/WindowsCommandLine.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "fenk/system/RegularFile.h"

namespace Associations {

const char FileName[] = "/assosiate.json";

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;
constexpr int MaximumAssociations = 2000;
constexpr int MaximumTextCharacters = 256;
constexpr int MaximumPathCharacters = 1024;
const char Classes[] = "Software\\Classes\\";

bool isExtension(const QString& key) {
    static const QRegularExpression expression("\\A\\.[\\w!#$&+~-]{1,32}\\z",
                                               QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(key).hasMatch();
}

bool isScheme(const QString& key) {
    static const QRegularExpression expression("\\A[a-z][a-z0-9+.-]{1,63}\\z");
    return expression.match(key).hasMatch();
}

bool isMimeType(const QString& text) {
    static const QRegularExpression expression(
        "\\A[a-z0-9][a-z0-9!#$&^_.+-]{0,126}/[\\w][\\w!#$&^_.+~-]{0,126}\\z",
        QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(text).hasMatch();
}

/// The program of a command such as "C:\Program Files\x\x.exe" "%1", which many write without quotes.
QString programOf(const QString& command) {
    QString path = WindowsCommandLine::split(command).value(0);
    static const QRegularExpression unquoted("\\A([A-Za-z]:\\\\[^\"]*?\\.exe)(?:\\s|\\z)",
                                             QRegularExpression::CaseInsensitiveOption);
    const auto match = unquoted.match(command.trimmed());
    if (match.hasMatch())
        path = match.captured(1);
    const bool isFull = WindowsPath::isWindowsPath(path) && path.size() > 3;
    return isFull && !ExecutableRules::isOfWine(path) ? path : QString();
}

/// Texts of a program's resources ("@x.dll,-5") cannot be read.
QString plain(const QString& text) {
    return text.startsWith('@') || text.contains("%") ? QString()
                                                      : text.simplified().left(MaximumTextCharacters);
}

/// The machine's MIME type of an extension takes precedence over the one that a Windows program has
/// registered.
QString mimeOf(const QString& extension, const QString& contentType) {
    const QMimeType known = QMimeDatabase().mimeTypeForFile('x' + extension, QMimeDatabase::MatchExtension);
    if (!known.isDefault())
        return known.name();
    return isMimeType(contentType.toLower()) ? contentType.toLower()
                                             : "application/x-cellarix-" + extension.mid(1);
}

QJsonObject describe(const RegistryFile::Keys& classes, const QString& progId, const QString& mime) {
    const QString id = progId.toLower();
    QString verb = classes[id + "\\shell"].value("").section(',', 0, 0).trimmed().toLower();
    if (verb.isEmpty() || !classes.contains(id + "\\shell\\" + verb + "\\command"))
        verb = "open";
    const QString program = programOf(classes[id + "\\shell\\" + verb + "\\command"].value(""));
    const QString icon = classes[id + "\\defaulticon"].value("");
    if (program.isEmpty() || program.size() > MaximumPathCharacters || progId.size() > MaximumTextCharacters)
        return {};
    const QString comment = plain(classes[id].value(""));
    QString name = plain(classes[id].value("friendlytypename"));
    if (name.isEmpty())
        name = comment.isEmpty() ? QString(program).section('\\', -1).section('.', 0, 0) : comment;
    return {{"mime", mime},       {"progid", progId},      {"executable", program},
            {"comment", comment}, {"friendly_name", name}, {"icon", icon.left(MaximumPathCharacters)}};
}

}  // namespace

QJsonObject collect(const RegistryFile::Keys& classes) {
    QJsonObject all;
    for (auto it = classes.begin(); it != classes.end() && all.size() < MaximumAssociations; ++it) {
        const bool isLink = it->contains("url protocol") && isScheme(it.key());
        const QString progId = isLink ? it.key() : it->value("");
        if (!isLink && (!isExtension(it.key()) || progId.isEmpty()))
            continue;
        const QString mime =
            isLink ? "x-scheme-handler/" + it.key() : mimeOf(it.key(), it->value("content type"));
        const QJsonObject entry = describe(classes, progId, mime);
        if (!entry.isEmpty())
            all.insert(it.key(), entry);
    }
    return all;
}

RegistryFile::Keys classesOf(const QString& bottlePath) {
    RegistryFile::Keys classes = RegistryFile::read(bottlePath + "/system.reg", Classes);
    const RegistryFile::Keys own = RegistryFile::read(bottlePath + "/user.reg", Classes);
    for (auto key = own.begin(); key != own.end(); ++key) {
        RegistryFile::Values& values = classes[key.key()];
        for (auto value = key->begin(); value != key->end(); ++value)
            values.insert(value.key(), value.value());
    }
    return classes;
}

QJsonObject load(const QString& bottlePath) {
    const QByteArray text =
        Fenk::RegularFile::read(bottlePath + FileName, MaximumBytes).value_or(QByteArray());
    QJsonObject all = QJsonDocument::fromJson(text).object();
    for (auto it = all.begin(); it != all.end();) {
        const bool isGood = (isExtension(it.key()) || isScheme(it.key())) &&
                            isMimeType(it.value().toObject()["mime"].toString());
        it = isGood ? it + 1 : all.erase(it);
    }
    return all;
}

}  // namespace Associations
