#pragma once

#include <QList>
#include <QPointer>

#include "fenk/window/AbstractDialog.h"

class QHBoxLayout;
class QAbstractButton;
class QPushButton;

namespace Fenk {

/// A question: title, message, content of the caller's own, and equally wide buttons along the bottom,
/// numbered from 0 in the order in which they were added. Escape and the close button answer -1. Return
/// presses the recommended button, or the default one, but never one that destroys unless it has the focus.
class Dialog : public AbstractDialog {
    Q_OBJECT
public:
    enum ButtonType { ButtonNormal, ButtonRecommend, ButtonWarning };
    Q_ENUM(ButtonType)

    explicit Dialog(QWidget* parent = nullptr);
    Dialog(const QString& title, const QString& message, QWidget* parent = nullptr);

    /// Plain text; lines break at "\n" and where they get too long.
    void setMessage(const QString& message);
    QString message() const;

    /// The index of the new button.
    int addButton(const QString& text, bool isDefault = false, ButtonType type = ButtonNormal);
    void addButtons(const QStringList& texts);
    void clearButtons();
    int buttonCount() const { return m_buttons.size(); }
    QAbstractButton* button(int index) const;

    /// Below the message, in the order of the calls; the dialog takes the widget over.
    void addContent(QWidget* content);
    void clearContents();

    /// False: a click only says buttonClicked, and whoever listens closes the dialog with done(index).
    void setOnButtonClickedClose(bool closes) { m_closesOnClick = closes; }

    /// The index of the clicked button, or -1. accept() counts as a click on the button with index 1, without
    /// the signal.
    int exec() override;
    void done(int index) override;
    void reject() override;

    /// For tests: the next exec() of any dialog answers with this index at once and shows nothing.
    static void setNextAnswer(int index);

Q_SIGNALS:
    void buttonClicked(int index, const QString& text);

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void click(QPushButton* button);
    void equalizeButtons();
    QPushButton* answerToReturn() const;

    Label* m_message;
    QVBoxLayout* m_contents;
    QHBoxLayout* m_row;
    QList<QPushButton*> m_buttons;
    QPointer<QPushButton> m_default;
    bool m_closesOnClick = true;
    bool m_answered = false;
};

}  // namespace Fenk
