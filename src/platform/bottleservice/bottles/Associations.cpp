#include "bottleservice/bottles/Associations.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QMimeDatabase>
#include <QRegularExpression>

#include "bottleservice/bottles/ExecutableRules.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/wine/WindowsCommandLine.h"

namespace Associations {

const char FileName[] = "/assosiate.json";

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;
constexpr int MaximumAssociations = 2000;
constexpr int MaximumTextCharacters = 256;
const char Classes[] = "Software\\Classes\\";

bool matches(const char* pattern, const QString& text) {
    return QRegularExpression(QString("\\A(?:%1)\\z").arg(pattern)).match(text).hasMatch();
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

/// Texts that stand in a program's resources ("@x.dll,-5") are of no use.
QString plain(const QString& text) {
    return text.startsWith('@') || text.contains("%") ? QString()
                                                      : text.simplified().left(MaximumTextCharacters);
}

/// What the machine knows of an extension stands above what a Windows program says of it.
QString mimeOf(const QString& extension, const QString& contentType) {
    const QMimeType known = QMimeDatabase().mimeTypeForFile('x' + extension, QMimeDatabase::MatchExtension);
    if (!known.isDefault())
        return known.name();
    const bool isType =
        matches("[a-z0-9][a-z0-9!#$&^_.+-]*/[a-z0-9][a-z0-9!#$&^_.+-]*", contentType.toLower());
    return isType ? contentType.toLower() : "application/x-cellarix-" + extension.mid(1);
}

QJsonObject describe(const RegistryFile::Keys& classes, const QString& progId, const QString& mime) {
    const QString id = progId.toLower();
    QString verb = classes[id + "\\shell"].value("").section(',', 0, 0).trimmed().toLower();
    if (verb.isEmpty() || !classes.contains(id + "\\shell\\" + verb + "\\command"))
        verb = "open";
    const QString program = programOf(classes[id + "\\shell\\" + verb + "\\command"].value(""));
    if (program.isEmpty())
        return {};
    const QString comment = plain(classes[id].value(""));
    QString name = plain(classes[id].value("friendlytypename"));
    if (name.isEmpty())
        name = comment.isEmpty() ? QString(program).section('\\', -1).section('.', 0, 0) : comment;
    return {{"mime", mime},       {"progid", progId},      {"executable", program},
            {"comment", comment}, {"friendly_name", name}, {"icon", classes[id + "\\defaulticon"].value("")}};
}

}  // namespace

QJsonObject collect(const RegistryFile::Keys& classes) {
    QJsonObject all;
    for (auto it = classes.begin(); it != classes.end() && all.size() < MaximumAssociations; ++it) {
        const bool isScheme = it->contains("url protocol") && matches("[a-z][a-z0-9+.-]*", it.key());
        const QString progId = isScheme ? it.key() : it->value("");
        if (!isScheme && (!matches("\\.[\\w!#$&+~-]{1,32}", it.key()) || progId.isEmpty()))
            continue;
        const QString mime =
            isScheme ? "x-scheme-handler/" + it.key() : mimeOf(it.key(), it->value("content type"));
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
    QFile file(bottlePath + FileName);
    if (QFileInfo(file.fileName()).isSymLink() || !file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.read(MaximumBytes)).object();
}

}  // namespace Associations
