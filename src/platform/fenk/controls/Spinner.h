#pragma once

#include <QTimer>
#include <QWidget>

namespace Fenk {

/// A ring that says that something is alive. Turns while playing; stands still, but shows, when the desktop
/// wants no animation. Painted by its own clock, so a busy GUI thread makes it skip, not lag.
class Spinner : public QWidget {
    Q_OBJECT
public:
    explicit Spinner(QWidget* parent = nullptr);

    void start();
    /// Shows only if the work is still under way after half a second.
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
