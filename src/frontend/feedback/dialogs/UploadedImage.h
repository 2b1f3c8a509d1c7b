#pragma once

#include <QAbstractButton>
#include <QPixmap>

#include "feedback/dialogs/ImageUploads.h"
#include "fenk/style/Theme.h"

class QPushButton;
class UploadedImageHoverWidget;

/// The thumbnail of one picture of a report, with the progress of its upload, and a button to repeat one that
/// has failed. A click elsewhere, Delete and Backspace ask for its removal.
class UploadedImage : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int Width = 104;
    static constexpr int Height = 76;

    explicit UploadedImage(const ImageUploads::Image& image, QWidget* parent = nullptr);

    void showState(const ImageUploads::Image& image);
    QSize sizeHint() const override { return {Width, Height}; }
    QPushButton* retryButton() const { return m_retry; }

Q_SIGNALS:
    void removalWanted();
    void retryWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void updateHover();
    QString stateText() const;
    QRect freeRect() const;  ///< above the button
    void drawText(QPainter* painter, const QString& text, Fenk::Theme::Role role) const;

    QString m_name;
    ImageUploads::State m_state = ImageUploads::State::Kept;
    qreal m_progress = 0;  ///< 0 to 1
    QPixmap m_thumbnail;
    UploadedImageHoverWidget* m_hover;
    QPushButton* m_retry;
};
