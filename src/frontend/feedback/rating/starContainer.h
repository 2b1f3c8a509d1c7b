#pragma once

#include <QRadioButton>

/// One star of a rating that can be chosen; lit as one of those up to the rating.
class starContainer : public QRadioButton {
    Q_OBJECT
public:
    /// From 1 on.
    explicit starContainer(int index, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

public Q_SLOTS:
    void handleStar(int score);

Q_SIGNALS:
    /// The pointer is on the star, or has left it (0).
    void hovered(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    const int m_index;
    bool m_isLit = false;
};
