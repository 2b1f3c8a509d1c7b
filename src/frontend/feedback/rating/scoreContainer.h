#pragma once

#include <QVector>
#include <QWidget>

class starContainer;

/// A row of five stars to choose a rating with: by the pointer, the arrow keys or a digit.
class scoreContainer : public QWidget {
    Q_OBJECT
public:
    static constexpr int Count = 5;

    explicit scoreContainer(QWidget* parent = nullptr);

    /// 1 to 5; 0 while none is chosen.
    int score() const { return m_score; }
    /// Chooses a star, as a click does.
    void choose(int score);

Q_SIGNALS:
    /// The star of this number, from 1 on, was chosen.
    void starClick(int index);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void light(int score);

    QVector<starContainer*> m_stars;
    int m_score = 0;
};
