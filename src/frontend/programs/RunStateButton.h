#pragma once

#include <QPushButton>

/// The button that installs, starts, quits or repairs a program. Shows a picture when idle, picture and text
/// while the program runs and for installing it, and text alone in the other states. Fits its width to its
/// contents.
class RunStateButton : public QPushButton {
    Q_OBJECT
public:
    enum State { Idle, Running, Installing, Repair, Install };

    explicit RunStateButton(QWidget* parent = nullptr);

    void setState(State state);
    State state() const { return m_state; }
    /// With a text when idle, too.
    void setWordy(bool wordy);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Null for a state that shows text alone.
    QIcon picture() const;
    bool hasPicture() const { return m_state == Idle || m_state == Running || m_state == Install; }

    State m_state = Idle;
    bool m_isWordy = false;
};
