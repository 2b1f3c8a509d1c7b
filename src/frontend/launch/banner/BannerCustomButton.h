#pragma once

#include <QIcon>
#include <QWidget>

class QLabel;

/// A small button of the banner: a picture of 20 x 20 pixels and a word. Pressed by mouse, Space, Return and
/// assistive tools.
class BannerCustomButton : public QWidget {
    Q_OBJECT
public:
    /// The picture is drawn in the colour of the word, whatever its own colours are.
    BannerCustomButton(const QIcon& icon, const QString& text, QWidget* parent = nullptr);

    QString text() const;

Q_SIGNALS:
    void clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setPressed(bool pressed);

    QIcon m_icon;
    QLabel* m_label;
    bool m_pressed = false;
};
