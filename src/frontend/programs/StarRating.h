#pragma once

#include <QWidget>

/// Five stars that show a rating. A click, or the arrow keys and Return, emit rated(); the stars change only
/// by setStars(). Read-only ones take no part in mouse and keys.
class StarRating : public QWidget {
    Q_OBJECT
public:
    explicit StarRating(QWidget* parent = nullptr);

    /// 0 (not rated) to 5; other numbers are clamped.
    void setStars(int stars);
    int stars() const { return m_stars; }
    void setReadOnly(bool readOnly) { m_isReadOnly = readOnly; }
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
    void setPreview(int stars);

    int m_stars = 0;
    bool m_isReadOnly = false;
    int m_preview = 0;  ///< what a click would give; 0 for none
};
