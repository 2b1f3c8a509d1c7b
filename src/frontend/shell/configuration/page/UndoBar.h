#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

class QPushButton;

namespace Fenk {
class Label;
}

/// Says what has just been changed and offers for 10 s to take it back. A newer change of any owner replaces
/// the offer.
class UndoBar : public QWidget {
    Q_OBJECT
public:
    explicit UndoBar(QWidget* parent = nullptr);

    /// `undo` takes the change back and must live as long as this object or until it is withdrawn.
    void offer(const QString& what, const QObject* owner, const std::function<void()>& undo);
    /// Does nothing when a change of another owner is on offer.
    void withdraw(const QObject* owner);
    bool isOffering() const { return m_timer.isActive(); }

private:
    void end();

    Fenk::Label* m_text;
    QPushButton* m_button;
    QTimer m_timer;
    const QObject* m_owner = nullptr;
    std::function<void()> m_undo;
};
