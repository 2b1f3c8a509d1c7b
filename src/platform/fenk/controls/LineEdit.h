#pragma once

#include <QLineEdit>
#include <QTimer>
#include <QWidget>

#include "fenk/style/Tokens.h"

namespace Fenk {

class Label;

/// A line edit that can report an error: a red border, and a message below.
class LineEdit : public QWidget {
    Q_OBJECT
public:
    explicit LineEdit(QWidget* parent = nullptr);

    QLineEdit* lineEdit() const { return m_edit; }
    QString text() const { return m_edit->text(); }
    void setText(const QString& text) { m_edit->setText(text); }
    void setPlaceholderText(const QString& text) { m_edit->setPlaceholderText(text); }
    /// Sets the name of the inner QLineEdit, which screen readers report.
    void setAccessibleName(const QString& name);

    bool isAlert() const { return m_alert; }
    void setAlert(bool alert);

    /// Shows red border and message until the text changes, or for `ms` milliseconds; 0: no time limit.
    void showAlertMessage(const QString& message, int ms = Tokens::AlertMs);
    QString alertMessage() const;
    void hideAlertMessage();

Q_SIGNALS:
    void textChanged(const QString& text);
    void textEdited(const QString& text);
    void editingFinished();
    void returnPressed();

private:
    QLineEdit* m_edit;
    Label* m_message;
    QTimer m_timer;
    bool m_alert = false;
};

}  // namespace Fenk
