#pragma once

#include <QWidget>

class QMimeData;

/// Lies over the window while a file that can be run is dragged across it, and says that it will be taken.
class DropFrame : public QWidget {
    Q_OBJECT
public:
    explicit DropFrame(QWidget* parent);

    /// The first local Windows program in a drag, or nothing.
    static QString programIn(const QMimeData* data);

protected:
    void paintEvent(QPaintEvent* event) override;
};
