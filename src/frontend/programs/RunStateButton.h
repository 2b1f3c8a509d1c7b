#pragma once

#include <QPushButton>

/// Starts and quits a program: a picture while idle, picture and word while the program runs, and a word only
/// while something is being installed and for a program that is to be repaired.
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
    const char* picture() const;

    State m_state = Idle;
};
