#pragma once

#include <QAbstractButton>
#include <QPixmap>

/// A program's icon in a circle, and a button to choose another: under the pointer, and when a key brought
/// the focus there, a pen lies over it.
class AppEntryIconEditor : public QAbstractButton {
    Q_OBJECT
public:
    explicit AppEntryIconEditor(QWidget* parent = nullptr);

    QString file() const { return m_file; }
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
    bool m_fills = false;  ///< has something to show in its corners, and so to cut off
    bool m_focusByKey = false;
};
