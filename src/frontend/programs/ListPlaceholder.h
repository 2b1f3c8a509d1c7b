#pragma once

#include <QIcon>
#include <QWidget>

class QPushButton;

namespace Fenk {
class Label;
}

/// What stands where a list would be: a picture, a sentence, and the one thing to do.
class ListPlaceholder : public QWidget {
    Q_OBJECT
public:
    /// Without a button when it has no word.
    ListPlaceholder(const QIcon& icon, const QString& sentence, const QString& buttonWord = QString(),
                    QWidget* parent = nullptr);

    /// A second sentence, such as the reason of a failure; none when empty.
    void setDetail(const QString& text);

    QPushButton* button() const { return m_button; }

Q_SIGNALS:
    void pressed();

private:
    QPushButton* m_button = nullptr;
    Fenk::Label* m_detail;
};
