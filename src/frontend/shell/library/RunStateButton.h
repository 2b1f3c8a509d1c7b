#pragma once

#include <QPushButton>

/// Starts and quits a program: a picture while idle, picture and word while the program runs, and a word only
/// while something is being installed.
class RunStateButton : public QPushButton {
    Q_OBJECT
public:
    enum State { Idle, Running, Installing };

    explicit RunStateButton(QWidget* parent = nullptr);

    void setState(State state);
    State state() const { return m_state; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    State m_state = Idle;
};
