#pragma once

#include <QWidget>

/// Five stars that show a rating and take one: by click, or with the arrow keys and Return.
class StarRating : public QWidget {
    Q_OBJECT
public:
    explicit StarRating(QWidget* parent = nullptr);

    void setStars(int stars);
    int stars() const { return m_stars; }
    QSize sizeHint() const override;

Q_SIGNALS:
    void rated(int stars);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    int starAt(const QPoint& position) const;
    void offer(int stars);

    int m_stars = 0;
    int m_offered = 0;  ///< what a click would give; 0 for none
};
