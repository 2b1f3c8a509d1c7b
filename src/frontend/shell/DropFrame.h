#pragma once

#include <QWidget>

class QMimeData;

/// Covers the window while a file that can be run is dragged over it. Takes no events itself.
class DropFrame : public QWidget {
    Q_OBJECT
public:
    explicit DropFrame(QWidget* parent);

    /// The path of the first local Windows program in a drag, or an empty string.
    static QString programIn(const QMimeData* data);

protected:
    void paintEvent(QPaintEvent* event) override;
};
