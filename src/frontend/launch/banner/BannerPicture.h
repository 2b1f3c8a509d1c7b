#pragma once

#include <QIcon>
#include <QWidget>
#include <optional>

#include "fenk/style/Theme.h"

/// An icon in a square of fixed size in pixels, drawn at the resolution of the screen. A small icon is
/// enlarged to twice its size at most; more would show its pixels.
class BannerPicture : public QWidget {
    Q_OBJECT
public:
    explicit BannerPicture(int side, QWidget* parent = nullptr);

    void setIcon(const QIcon& icon);
    /// Draws only the shape of the icon, in a colour of the theme.
    void setTint(Fenk::Theme::Role role);
    void setOpacity(qreal opacity);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
    std::optional<Fenk::Theme::Role> m_tint;
    qreal m_opacity = 1;
};
