#pragma once

#include <QLineEdit>
#include <QTimer>
#include <QWidget>

#include "fenk/style/Tokens.h"

namespace Fenk {

class Label;

/// A field that can say what is wrong with its content: a red border, and a sentence right below.
class LineEdit : public QWidget {
    Q_OBJECT
public:
    explicit LineEdit(QWidget* parent = nullptr);

    QLineEdit* lineEdit() const { return m_edit; }
    QString text() const { return m_edit->text(); }
    void setText(const QString& text) { m_edit->setText(text); }
    void setPlaceholderText(const QString& text) { m_edit->setPlaceholderText(text); }
    /// Goes to the field itself, which is what a screen reader meets.
    void setAccessibleName(const QString& name);

    bool isAlert() const { return m_alert; }
    void setAlert(bool alert);

    /// Red border and sentence until the text changes, or for `ms` milliseconds; 0 for no limit.
    void showAlertMessage(const QString& sentence, int ms = Tokens::AlertMs);
    QString alertMessage() const;
    void hideAlertMessage();

Q_SIGNALS:
    void textChanged(const QString& text);
    void textEdited(const QString& text);
    void editingFinished();
    void returnPressed();

private:
    QLineEdit* m_edit;
    Label* m_sentence;
    QTimer m_timer;
    bool m_alert = false;
};

}  // namespace Fenk
