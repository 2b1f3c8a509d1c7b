#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>

class QPushButton;

namespace Fenk {
class Label;
}

/// Says for 10 s what has just been changed and offers to take it back. The shortcut takes it back later,
/// too, until a newer change of any owner replaces the offer.
class UndoBar : public QWidget {
    Q_OBJECT
public:
    explicit UndoBar(QWidget* parent = nullptr);

    /// `undo` takes the change back and must live as long as this object or until it is withdrawn.
    void offer(const QString& what, const QObject* owner, const std::function<void()>& undo);
    /// Does nothing when a change of another owner is on offer.
    void withdraw(const QObject* owner);

private:
    void end();
    void hideOffer();

    Fenk::Label* m_text;
    QPushButton* m_button;
    QTimer m_timer;
    const QObject* m_owner = nullptr;
    std::function<void()> m_undo;
};
