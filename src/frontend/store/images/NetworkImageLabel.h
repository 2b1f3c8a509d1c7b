#pragma once

#include <QPixmap>
#include <QUrl>
#include <QWidget>

/// A picture with rounded corners, scaled to fit, and an animation until it is there. Belongs to its parent.
class NetworkImageLabel : public QWidget {
    Q_OBJECT
public:
    explicit NetworkImageLabel(QWidget* parent = nullptr);
    ~NetworkImageLabel() override;

    /// Shows the animation until the picture has been loaded. Takes back a load that is under way.
    void setUrl(const QUrl& url);
    /// Shows a picture at once; a null one shows the animation. The caller loads.
    void setPixmap(const QPixmap& pixmap);
    const QPixmap& pixmap() const { return m_pixmap; }
    bool isLoading() const { return m_pixmap.isNull(); }
    void setRadius(int radius) { m_radius = radius; }

Q_SIGNALS:
    /// The picture of the address given to setUrl() is shown.
    void loaded();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void abortLoad();
    void updateAnimation();

    QUrl m_url;
    bool m_isWaiting = false;  ///< for the picture of m_url
    QMetaObject::Connection m_loaded;
    QPixmap m_pixmap;
    QPixmap m_scaled;  ///< in device pixels
    int m_radius;
};
