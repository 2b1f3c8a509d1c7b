#pragma once

#include <QAbstractButton>
#include <QPixmap>

/// A round button with a program's icon, for choosing another one. Shows a pen over the icon while hovered,
/// or focused by key.
class AppEntryIconEditor : public QAbstractButton {
    Q_OBJECT
public:
    explicit AppEntryIconEditor(QWidget* parent = nullptr);

    QString file() const { return m_file; }
    /// Keeps the old picture until ProgramIcons has read the new one.
    void setFile(const QString& file);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    void showPicture();

    QString m_file;
    QPixmap m_picture;
    bool m_fills = false;  ///< opaque corners: scaled to fill the circle, which cuts them off
    bool m_focusByKey = false;
};
