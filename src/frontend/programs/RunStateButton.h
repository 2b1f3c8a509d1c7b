#pragma once

#include <QPushButton>

/// The button that starts, quits or repairs a program. Shows a picture when idle, picture and text while the
/// program runs, and text alone in the other states. Fits its width to its contents.
class RunStateButton : public QPushButton {
    Q_OBJECT
public:
    enum State { Idle, Running, Installing, Repair };

    explicit RunStateButton(QWidget* parent = nullptr);

    void setState(State state);
    State state() const { return m_state; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Null for a state that shows text alone.
    const char* picture() const;

    State m_state = Idle;
};
