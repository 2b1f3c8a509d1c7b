#pragma once

#include <QWidget>

/// A dashed frame that takes dropped files and links; its owner fills it. Highlighted while something is
/// dragged over it. GUI thread.
class DropArea : public QWidget {
    Q_OBJECT
public:
    explicit DropArea(QWidget* parent = nullptr);

Q_SIGNALS:
    void dropped(const QList<QUrl>& urls);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool m_isDragged = false;
};
