#pragma once

#include <QTimer>
#include <QWidget>

namespace Fenk {

/// A ring that shows activity. Rotates while playing; visible but static if the desktop wants no animations.
/// The angle depends on the time, so a busy GUI thread skips frames instead of slowing it down.
class Spinner : public QWidget {
    Q_OBJECT
public:
    explicit Spinner(QWidget* parent = nullptr);

    void start();
    /// Becomes visible only if stop() is not called within half a second.
    void startDelayed();
    void stop();
    bool isPlaying() const { return m_playing; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void updateFrames();

    QTimer m_frames;
    QTimer m_delay;
    bool m_playing = false;
};

}  // namespace Fenk
