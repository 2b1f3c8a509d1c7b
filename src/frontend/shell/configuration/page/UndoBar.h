#pragma once

#include <QTimer>
#include <QWidget>

class QPushButton;

namespace Fenk {
class Label;
}

/// Says what has just been changed and offers for 10 s to take it back.
class UndoBar : public QWidget {
    Q_OBJECT
public:
    explicit UndoBar(QWidget* parent = nullptr);

    void offer(const QString& what);
    void withdraw();
    bool isOffering() const { return m_timer.isActive(); }

Q_SIGNALS:
    void undone();

private:
    Fenk::Label* m_text;
    QPushButton* m_button;
    QTimer m_timer;
};
