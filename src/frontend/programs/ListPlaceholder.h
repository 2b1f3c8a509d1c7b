#pragma once

#include <QIcon>
#include <QWidget>

class QLabel;
class QPushButton;

namespace Fenk {
class Label;
}

/// Shown instead of a list that is empty or could not be loaded: a picture, a text and at most one button.
class ListPlaceholder : public QWidget {
    Q_OBJECT
public:
    /// Without a button when `buttonText` is empty.
    ListPlaceholder(const QIcon& icon, const QString& text, const QString& buttonText = QString(),
                    QWidget* parent = nullptr);

    /// A second text, such as the reason of a failure; hidden when empty.
    void setDetail(const QString& text);
    void setText(const QString& text);
    /// Replaces the picture, such as by the one for another theme.
    void setIcon(const QIcon& icon);

    /// Null without one.
    QPushButton* button() const { return m_button; }

Q_SIGNALS:
    void pressed();

private:
    QIcon m_icon;
    QLabel* m_picture;
    QPushButton* m_button = nullptr;
    Fenk::Label* m_label;
    Fenk::Label* m_detail;
};
