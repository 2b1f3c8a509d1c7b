#pragma once

#include <QWidget>

/// A program's name as plain text on at most two centred lines; elided where it is too long.
class TileName : public QWidget {
    Q_OBJECT
public:
    explicit TileName(QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return m_text; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
