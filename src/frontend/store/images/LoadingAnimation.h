#pragma once

#include <QPixmap>
#include <QSet>
#include <QTimer>
#include <QVector>

class QWidget;

/// The animation of whatever waits for its contents: one timer of 16 ms for all widgets, running while at
/// least one of them is registered. Still if the desktop wants no animations. Owned by the application
/// object; GUI thread.
class LoadingAnimation : public QObject {
    Q_OBJECT
public:
    static constexpr int Frames = 150;

    static LoadingAnimation* instance();

    /// Repaints the widget for each frame until remove(), which must come before the widget is deleted.
    void add(QWidget* widget);
    void remove(QWidget* widget);
    bool isRunning() const { return m_timer.isActive(); }
    /// A square of transparent greys.
    const QPixmap& frame();

private:
    LoadingAnimation();
    void updateTimer();

    QTimer m_timer;
    QSet<QWidget*> m_widgets;
    QVector<QPixmap> m_frames;
    int m_frame = 0;
};
