#pragma once

#include <QIcon>
#include <QWidget>
#include <optional>

#include "fenk/style/Theme.h"

/// An icon in a square of fixed size, drawn at the screen's own resolution. A small icon is enlarged to twice
/// its size at most, since more would only show its pixels.
class BannerPicture : public QWidget {
    Q_OBJECT
public:
    explicit BannerPicture(int side, QWidget* parent = nullptr);

    void setIcon(const QIcon& icon);
    /// Only the shape of the icon, filled with a colour of the theme.
    void setTint(Fenk::Theme::Role role);
    void setOpacity(qreal opacity);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
    std::optional<Fenk::Theme::Role> m_tint;
    qreal m_opacity = 1;
};
