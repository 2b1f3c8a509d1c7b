#include "bottleservice/bottles/SetupManifest.h"

#include <QDebug>
#include <QFileInfo>

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"
#include "manifest/ManifestReader.h"

namespace SetupManifest {

const char FileName[] = "/setup-manifest.yml";

namespace {

QString comparable(const QString& path) {
    return QString(path).replace('/', '\\').toLower();
}

QJsonObject objectOf(const QMap<QString, QString>& texts) {
    QJsonObject object;
    for (auto it = texts.begin(); it != texts.end(); ++it)
        object.insert(it.key(), it.value());
    return object;
}

}  // namespace

std::optional<Manifest> load(const QString& bottlePath) {
    if (!QFileInfo::exists(bottlePath + FileName))
        return std::nullopt;
    const auto text = Fenk::RegularFile::read(bottlePath + FileName, ManifestReader::MaximumBytes);
    const auto result =
        text ? ManifestReader::read(*text) : ManifestReader::Result{{}, "It is no file, or too large."};
    if (result.error.isEmpty())
        return result.manifest;
    qWarning().noquote() << bottlePath + FileName << "is ignored:" << result.error;
    return std::nullopt;
}

QString save(const QString& directory, const QByteArray& text) {
    QString error;
    AtomicFile::replace(directory + FileName, text, &error);
    return error;
}

QJsonObject completed(const QJsonObject& program, const std::optional<Manifest>& manifest) {
    QJsonObject record = program;
    for (const Manifest::Program& known : manifest ? manifest->programs : QVector<Manifest::Program>()) {
        const QString path = comparable(program["path"].toString());
        // A manifest has only the name of a program that lay outside of its bottle.
        if (comparable(known.path) != (comparable(known.path).contains('\\') ? path : path.section('\\', -1)))
            continue;
        if (record["arguments"].toString().isEmpty())
            record.insert("arguments", known.arguments);
        if (record["envs"].toObject().isEmpty())
            record.insert("envs", objectOf(known.envs));
        break;
    }
    return record;
}

QJsonObject recordOf(const Manifest::Program& program) {
    QJsonObject record{
        {"path", program.path}, {"arguments", program.arguments}, {"envs", objectOf(program.envs)}};
    if (!program.name.isEmpty())
        record.insert("name", program.name);
    return record;
}

}  // namespace SetupManifest
