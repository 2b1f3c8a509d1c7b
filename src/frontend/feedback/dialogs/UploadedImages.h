#pragma once

#include <QVector>
#include <QWidget>

class ImageUploads;
class QGridLayout;
class QPushButton;
class UploadedImage;

/// The row of a report's pictures: their thumbnails and the button that adds some.
class UploadedImages : public QWidget {
    Q_OBJECT
public:
    explicit UploadedImages(ImageUploads* uploads, QWidget* parent = nullptr);

Q_SIGNALS:
    void addWanted();

private:
    void add(const QString& id);
    void remove(const QString& id);
    void arrange();

    ImageUploads* m_uploads;
    QGridLayout* m_grid;
    QPushButton* m_add;
    QVector<UploadedImage*> m_images;
};
