#include "bottleservice/desktop/AssociationFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QXmlStreamWriter>

namespace AssociationFiles {

namespace {

const char Namespace[] = "http://www.freedesktop.org/standards/shared-mime-info";

/// Whether the machine itself, not only this user's data, defines a type.
bool isOfMachine(const QString& mime) {
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    for (const QString& directory : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        if (directory != own && QFile::exists(directory + "/mime/" + mime + ".xml"))
            return true;
    }
    return false;
}

/// XML does not allow control characters.
QString printable(const QString& text) {
    QString result;
    for (const QChar& c : text)
        result += c.isPrint() || c.isSurrogate() ? c : QChar(' ');
    return result;
}

}  // namespace

DesktopEntry entry(const QString& command, const QString& bottle, const QString& key,
                   const QJsonObject& association) {
    DesktopEntry entry;
    const QString program = association["executable"].toString().section('\\', -1);
    entry.name = association["friendly_name"].toString();
    if (entry.name.isEmpty())
        entry.name = program;
    entry.icon = QFileInfo(association["icon"].toString()).isFile() ? association["icon"].toString()
                                                                    : "cxb_app_default_icon";
    entry.command = QStringList{command, "--open", bottle, key};
    entry.fileArgument = key.startsWith('.') ? "%f" : "%u";
    entry.mimeTypes = QStringList{association["mime"].toString()};
    entry.wmClass = program.toLower();
    entry.isHidden = true;
    return entry;
}

QByteArray mimePackage(const QJsonObject& associations, const QStringList& keys) {
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("mime-info");
    xml.writeDefaultNamespace(Namespace);
    bool isEmpty = true;
    for (const QString& key : keys) {
        const QJsonObject association = associations[key].toObject();
        const QString mime = association["mime"].toString();
        if (!key.startsWith('.') || isOfMachine(mime))
            continue;
        isEmpty = false;
        xml.writeStartElement("mime-type");
        xml.writeAttribute("type", mime);
        xml.writeTextElement("comment", printable(association["friendly_name"].toString()));
        xml.writeEmptyElement("glob");
        xml.writeAttribute("pattern", '*' + key);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return isEmpty ? QByteArray() : text;
}

}  // namespace AssociationFiles
