#include "launch/icons/SvgPicture.h"

#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QSvgRenderer>
#include <QXmlStreamReader>

namespace {

constexpr int MaximumBytes = 1024 * 1024;
constexpr int MaximumDepth = 64;
constexpr int MaximumUses = 64;

/// Whether a style sets dashes. Very short dashes take extremely long, so only "none" is allowed.
bool hasDashes(const QStringRef& style) {
    static const QRegularExpression dashes("dasharray(?!\\s*:\\s*none\\b)");
    return dashes.match(style).hasMatch();
}

bool hasDashes(const QXmlStreamAttributes& attributes) {
    for (const QXmlStreamAttribute& attribute : attributes) {
        const bool isArray = attribute.name().contains(QLatin1String("dasharray"));
        if ((isArray && attribute.value().trimmed() != QLatin1String("none")) || hasDashes(attribute.value()))
            return true;
    }
    return false;
}

QString reference(const QXmlStreamAttributes& attributes) {
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (attribute.name() == QLatin1String("href"))
            return attribute.value().toString().trimmed().mid(1);
    }
    return {};
}

}  // namespace

bool SvgPicture::isBounded(const QByteArray& text) {
    if (text.size() > MaximumBytes)
        return false;
    QXmlStreamReader reader(text);
    QStringList ids;            // of the enclosing elements, by depth
    QSet<QString> used, users;  // by id
    int uses = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
            case QXmlStreamReader::StartElement: {
                const QStringRef name = reader.name();
                ids << reader.attributes().value("id").toString();
                if ((ids.size() == 1 && name != QLatin1String("svg")) || ids.size() > MaximumDepth ||
                    name == QLatin1String("image") || hasDashes(reader.attributes()))
                    return false;
                if (name == QLatin1String("use")) {
                    if (++uses > MaximumUses)
                        return false;
                    used += reference(reader.attributes());
                    for (const QString& id : qAsConst(ids))
                        users += id;
                }
                break;
            }
            case QXmlStreamReader::EndElement:
                ids.removeLast();
                break;
            case QXmlStreamReader::Characters:
                if (hasDashes(reader.text()))
                    return false;
                break;
            case QXmlStreamReader::DTD:
                if (!reader.entityDeclarations().isEmpty())
                    return false;
                break;
            default:
                break;
        }
    }
    // An element that is referenced by <use> must not contain <use> itself.
    return !reader.hasError() && !used.intersects(users - QSet<QString>{QString()});
}

QImage SvgPicture::draw(const QByteArray& text, int edge) {
    QSvgRenderer renderer;
    if (!isBounded(text) || !renderer.load(text))
        return {};
    const QSize size = renderer.defaultSize().scaled(edge, edge, Qt::KeepAspectRatio);
    if (size.isEmpty())
        return {};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}
