#pragma once

#include <QWidget>

class LimitedTextEdit;

namespace Fenk {
class Label;
}

/// A text of several lines that is cut back to its maximum length while it is typed, and counted.
class IntroductionEdit : public QWidget {
    Q_OBJECT
public:
    explicit IntroductionEdit(QWidget* parent = nullptr);

    LimitedTextEdit* edit() const { return m_edit; }
    QString text() const;

Q_SIGNALS:
    void textChanged();

private:
    void onTextChanged();

    LimitedTextEdit* m_edit;
    Fenk::Label* m_counter;
};
