#pragma once

#include <QList>
#include <QPointer>

#include "fenk/window/AbstractDialog.h"

class QHBoxLayout;
class QAbstractButton;
class QPushButton;

namespace Fenk {

/// A question: title, message, optional content, and equally wide buttons along the bottom, numbered from 0
/// in the order of addition. Escape and the close button answer -1. Return presses the recommended or the
/// default button, but a destructive one only if it has the focus; a Return that is held down presses once.
/// After the answer, until it is shown again, clicks do nothing.
class Dialog : public AbstractDialog {
    Q_OBJECT
public:
    enum ButtonType { ButtonNormal, ButtonRecommend, ButtonWarning };
    Q_ENUM(ButtonType)

    explicit Dialog(QWidget* parent = nullptr);
    Dialog(const QString& title, const QString& message, QWidget* parent = nullptr);

    /// Plain text; wraps long lines and breaks at "
    /// ".
    void setMessage(const QString& message);
    QString message() const;

    /// Returns the index of the new button.
    int addButton(const QString& text, bool isDefault = false, ButtonType type = ButtonNormal);
    void addButtons(const QStringList& texts);
    void clearButtons();
    int buttonCount() const { return m_buttons.size(); }
    QAbstractButton* button(int index) const;

    /// Added below the message; the dialog takes ownership.
    void addContent(QWidget* content);
    void clearContents();

    /// If false, a click only emits buttonClicked, and the receiver closes the dialog with done(index).
    void setOnButtonClickedClose(bool closes) { m_closesOnClick = closes; }

    /// Returns the index of the clicked button, or -1. accept() counts as a click on button 1, without the
    /// signal.
    int exec() override;
    void done(int index) override;
    void reject() override;

    /// For tests: the next exec() of any dialog returns this index at once without showing the dialog.
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
