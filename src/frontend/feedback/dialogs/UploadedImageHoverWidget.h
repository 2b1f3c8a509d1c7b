#pragma once

#include <QWidget>

/// What lies over a thumbnail that the mouse or the focus is on: the offer to remove it. Leaves the mouse to
/// the thumbnail.
class UploadedImageHoverWidget : public QWidget {
    Q_OBJECT
public:
    explicit UploadedImageHoverWidget(QWidget* image);

protected:
    void paintEvent(QPaintEvent* event) override;
};
