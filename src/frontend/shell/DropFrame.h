#pragma once

#include <QWidget>

/// Covers the window while something that may be added is dragged over it. Takes no events itself.
class DropFrame : public QWidget {
    Q_OBJECT
public:
    explicit DropFrame(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};
