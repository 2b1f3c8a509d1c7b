#pragma once

#include <QAbstractButton>

/// A path on one line that leads somewhere; cut in the middle where there is no room, with all of it as tool
/// tip.
class PathLink : public QAbstractButton {
    Q_OBJECT
public:
    explicit PathLink(QWidget* parent = nullptr);

    void setPath(const QString& path);
    QString path() const { return m_path; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    QString shown() const;
    QRect words() const;

    QString m_path;  ///< not the button's text, in which an "&" would be a key
};
