#pragma once

#include <QPointer>
#include <QVariantAnimation>

class BannerPicture;
class QGraphicsOpacityEffect;
class QLabel;
class QWidget;

/// Moves a banner between its two looks: its height, and the fading of what the failed look has more. The
/// running look never fades: it is there at once, and a picture of what is left of the failed one fades above
/// it. Without animations, or while the banner is hidden, everything changes at once. Owned by its banner.
class BannerMotion : public QObject {
    Q_OBJECT
public:
    /// `changing` is all that differs between the two looks, `failed` the part of the failed look in it.
    BannerMotion(QWidget* banner, BannerPicture* icon, QWidget* changing, QWidget* failed);

    /// In pixels; the banner keeps its width.
    void moveHeight(int height);
    void fadeFailedIn();
    /// Call it while the failed part is still shown.
    void fadeFailedOut();

private:
    bool isAnimated() const;
    void leaveFailedPicture();
    void fade(qreal from, qreal to);
    void showFade(qreal failed);
    void endFade();

    QWidget* m_banner;
    BannerPicture* m_icon;
    QWidget* m_changing;
    QWidget* m_failed;
    QGraphicsOpacityEffect* m_opacity;
    QPointer<QLabel> m_leftover;  ///< picture of the failed part, which fades
    QVariantAnimation m_fade;
    QVariantAnimation m_height;
};
