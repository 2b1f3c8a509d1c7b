#include "storeserver/data/IconFile.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QtEndian>

namespace StoreServer {

namespace {

constexpr quint32 MaximumPixels = 512;
constexpr int HashLength = 16;
constexpr int PngHeaderBytes = 24;

QString pngFault(const QByteArray& data) {
    static const QByteArray signature("\x89PNG\r\n\x1a\n", 8);
    if (!data.startsWith(signature) || data.size() < PngHeaderBytes || data.mid(12, 4) != "IHDR")
        return "The file is not a PNG image.";
    const auto width = qFromBigEndian<quint32>(data.constData() + 16);
    const auto height = qFromBigEndian<quint32>(data.constData() + 20);
    if (width == 0 || height == 0 || width > MaximumPixels || height > MaximumPixels)
        return QString("The image is larger than %1 x %1 pixels.").arg(MaximumPixels);
    return {};
}

/// Whether a style asks for something that is not in the image, or has escapes that may hide this.
bool leadsOut(const QString& style) {
    static const QRegularExpression form(R"(@import|\\|url\s*\((?!\s*['"]?#))",
                                         QRegularExpression::CaseInsensitiveOption);
    return form.match(style).hasMatch();
}

bool isOutside(const QXmlStreamAttribute& attribute) {
    const QString value = attribute.value().toString().trimmed();
    if (attribute.name().compare(QLatin1String("href"), Qt::CaseInsensitive) == 0)
        return !value.startsWith('#') && !value.startsWith("data:image/png;base64,");
    return attribute.name().startsWith(QLatin1String("on"), Qt::CaseInsensitive) || leadsOut(value);
}

QString svgFault(const QByteArray& data) {
    QXmlStreamReader reader(data);
    bool isFirst = true;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::DTD)
            return "The image has a document type, which icons must not have.";
        if (token == QXmlStreamReader::ProcessingInstruction)
            return "The image has a processing instruction, which icons must not have.";
        if (token != QXmlStreamReader::StartElement)
            continue;
        if (isFirst && reader.name() != QLatin1String("svg"))
            return "The file is not an SVG image.";
        isFirst = false;
        if (reader.name() == QLatin1String("script") || reader.name() == QLatin1String("foreignObject"))
            return QString("The image has a \"%1\", which icons must not have.")
                .arg(reader.name().toString());
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            if (isOutside(attribute))
                return QString("The image has a \"%1\" that leads out of it.")
                    .arg(attribute.name().toString());
        }
        if (reader.name() == QLatin1String("style") && leadsOut(reader.readElementText()))
            return "The image has a \"style\" that leads out of it.";
    }
    return reader.hasError() ? "The file is not an SVG image: " + reader.errorString() + '.' : QString();
}

}  // namespace

QString IconFile::servedName(const QString& appInfoId) const {
    if (kind == Kind::None)
        return {};
    const QByteArray hash =
        QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex().left(HashLength);
    return appInfoId + '-' + QString::fromLatin1(hash) + (kind == Kind::Png ? ".png" : ".svg");
}

QString iconFault(IconFile::Kind kind, const QByteArray& data) {
    if (data.size() > MaximumIconBytes)
        return QString("The file is larger than %1 bytes.").arg(MaximumIconBytes);
    switch (kind) {
        case IconFile::Kind::Png:
            return pngFault(data);
        case IconFile::Kind::Svg:
            return svgFault(data);
        case IconFile::Kind::None:
            break;
    }
    return {};
}

}  // namespace StoreServer
