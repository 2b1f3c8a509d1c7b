#pragma once

#include <QAbstractButton>

/// A path as a link on one line, elided in the middle, with the whole path as tool tip. clicked() only; the
/// owner opens it. Disabled while the path is empty.
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
    QRect textRect() const;

    QString m_path;  ///< not the button's text, where "&" would mark a mnemonic
};
