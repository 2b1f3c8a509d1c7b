#pragma once

#include <QWidget>

class QLabel;

namespace Fenk {
class Label;
}

/// What a dialog wants of the user before it can go on, with a picture that says whether it is there.
class DependencyWarningWidget : public QWidget {
    Q_OBJECT
public:
    explicit DependencyWarningWidget(QWidget* parent = nullptr);

    /// Rich text: what comes from elsewhere must be escaped. Links open in the browser.
    void setText(const QString& html);
    void setGood(bool isGood);
    bool isGood() const { return m_isGood; }

private:
    void showPicture();

    QLabel* m_picture;
    Fenk::Label* m_text;
    bool m_isGood = false;
};
