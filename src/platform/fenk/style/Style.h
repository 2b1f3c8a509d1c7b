#pragma once

#include <QProxyStyle>
#include <memory>

namespace Fenk {

class ButtonKeys;
class FocusRing;
class Transitions;

/// Draws every control, over Fusion: dispatches to the painters in style/ and uses the measures of Tokens.h.
/// Installed by Application; has no settings and no colours of its own.
class Style : public QProxyStyle {
    Q_OBJECT
public:
    Style();
    ~Style() override;

    void polish(QWidget* widget) override;
    void unpolish(QWidget* widget) override;
    void polish(QPalette& palette) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget = nullptr) const override;

    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
                  QStyleHintReturn* data = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;

private:
    std::unique_ptr<FocusRing> m_ring;
    std::unique_ptr<ButtonKeys> m_buttonKeys;
    std::unique_ptr<Transitions> m_transitions;
};

}  // namespace Fenk
