#pragma once

#include <QColor>
#include <QIconEngine>

namespace Fenk {

/// Draws a one-colour icon in the current text colour of the theme, or in the disabled colour. The shape
/// comes from an SVG file or from an icon of the desktop's theme and is sharp at every scale.
class SymbolicIconEngine : public QIconEngine {
public:
    explicit SymbolicIconEngine(const QString& svgFile);
    explicit SymbolicIconEngine(const QIcon& shape);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override;
    QString key() const override { return "fenk-symbolic"; }

private:
    QString m_svgFile;
    QIcon m_shape;
};

/// Implements Theme::icon(): desktop theme, then ":/icons", then the toolkit's own icons.
QIcon loadIcon(const QString& name);

/// The shape of `icon` filled with one colour, for painters; `size` is in device-independent pixels at
/// `ratio`.
QPixmap tintedPixmap(const QIcon& icon, const QSize& size, qreal ratio, const QColor& color);

}  // namespace Fenk
