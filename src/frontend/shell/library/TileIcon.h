#pragma once

#include <QPixmap>
#include <QWidget>

/// A program's picture on its tile, with a dot while the program runs or when it has failed, and a ring when
/// its package has been removed. Draws an empty box until it has a picture.
class TileIcon : public QWidget {
    Q_OBJECT
public:
    enum class Dot { None, Running, Failed, Orphaned };

    explicit TileIcon(QWidget* parent);

    /// In device pixels.
    void setPicture(const QPixmap& picture);
    void setDot(Dot dot);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_picture;
    Dot m_dot = Dot::None;
};
