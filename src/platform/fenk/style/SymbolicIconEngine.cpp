#include "fenk/style/SymbolicIconEngine.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include "fenk/style/Theme.h"

namespace Fenk {

namespace {

const QLatin1String SymbolicSuffix("-symbolic");

QPixmap filled(QPixmap shape, const QColor& color) {
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), QSizeF(shape.size()) / shape.devicePixelRatioF()), color);
    return shape;
}

QPixmap rendered(const QString& svgFile, const QSize& size) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QFile file(svgFile);
    if (!file.open(QIODevice::ReadOnly))
        return pixmap;
    // Only the shape matters; the colour is filled in later.
    QSvgRenderer renderer(file.readAll().replace("currentColor", "#000000"));
    QPainter painter(&pixmap);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter);
    return pixmap;
}

bool isOneColour(const QString& svgFile) {
    QFile file(svgFile);
    return file.open(QIODevice::ReadOnly) && file.readAll().contains("currentColor");
}

QString ownFile(const QString& name) {
    for (const char* folder : {":/icons/", ":/fenk/icons/"}) {
        for (const char* suffix : {".svg", ".png"}) {
            const QString path = folder + name + suffix;
            if (QFile::exists(path))
                return path;
        }
    }
    // Without icon themes the programs' own icons are used where they are installed.
    const QStringList places = QIcon::themeSearchPaths();
    for (const QString& place : places) {
        const QString path = place + "/hicolor/scalable/apps/" + name + ".svg";
        if (!name.contains('/') && QFile::exists(path))
            return path;
    }
    return {};
}

/// A look-up in a theme tries thousands of missing files; skip it if only our own icon can result.
bool isThemed(const QString& name, const QString& own) {
    const QString theme = QIcon::themeName();
    const bool hasTheme = !theme.isEmpty() && theme != QLatin1String("hicolor");
    return !name.startsWith(QLatin1String("fenk-")) && (hasTheme || own.isEmpty()) &&
           QIcon::hasThemeIcon(name);
}

}  // namespace

SymbolicIconEngine::SymbolicIconEngine(const QString& svgFile) : m_svgFile(svgFile) {}
SymbolicIconEngine::SymbolicIconEngine(const QIcon& shape) : m_shape(shape) {}

QIconEngine* SymbolicIconEngine::clone() const {
    return new SymbolicIconEngine(*this);
}

void SymbolicIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1;
    QPixmap picture = pixmap(rect.size() * ratio, mode, state);
    picture.setDevicePixelRatio(ratio);
    painter->drawPixmap(rect.topLeft(), picture);
}

QPixmap SymbolicIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) {
    if (size.isEmpty())
        return {};
    const QColor color = Theme::instance()->color(mode == QIcon::Disabled ? Theme::Disabled : Theme::Text);
    const QString cacheKey = QString("fenk-icon %1 %2x%3 %4")
                                 .arg(m_svgFile.isEmpty() ? QString::number(m_shape.cacheKey()) : m_svgFile)
                                 .arg(size.width())
                                 .arg(size.height())
                                 .arg(color.rgba(), 0, 16);
    QPixmap picture;
    if (QPixmapCache::find(cacheKey, &picture))
        return picture;
    QPixmap shape = m_svgFile.isEmpty() ? m_shape.pixmap(size) : rendered(m_svgFile, size);
    shape.setDevicePixelRatio(1);
    picture = filled(shape, color);
    QPixmapCache::insert(cacheKey, picture);
    return picture;
}

QIcon loadIcon(const QString& name) {
    if (name.isEmpty())
        return {};
    const QString file = ownFile(name);
    if (isThemed(name, file)) {
        const QIcon themed = QIcon::fromTheme(name);
        return name.endsWith(SymbolicSuffix) ? QIcon(new SymbolicIconEngine(themed)) : themed;
    }
    if (file.isEmpty())
        return {};
    return file.endsWith(".svg") && isOneColour(file) ? QIcon(new SymbolicIconEngine(file)) : QIcon(file);
}

QPixmap tintedPixmap(const QIcon& icon, const QSize& size, qreal ratio, const QColor& color) {
    QPixmap shape(size * ratio);
    shape.fill(Qt::transparent);
    shape.setDevicePixelRatio(ratio);
    QPainter painter(&shape);
    icon.paint(&painter, QRect(QPoint(), size));
    painter.end();
    return filled(shape, color);
}

}  // namespace Fenk
