#pragma once

#include <QCache>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QThreadPool>

/// Reads and scales the icons of programs in the background and caches them, up to 48 MiB of pixels. One for
/// the process, owned by the application object; GUI thread.
class ProgramIcons : public QObject {
    Q_OBJECT
public:
    static ProgramIcons* instance();

    /// The picture of `edge` device pixels if it is cached. Otherwise null, and ready() follows when it was
    /// read. A file without a picture in it gives the generic program icon.
    QPixmap picture(const QString& file, int edge);
    /// Reads a file again that may have changed; the cached pictures stay until then.
    void refresh(const QString& file);

Q_SIGNALS:
    void ready(const QString& file);

private:
    ProgramIcons();
    void read(const QString& file, int edge);
    void onRead(const QString& file, int edge, const QImage& image);
    QPixmap fallback(int edge);

    QThreadPool m_readers;
    QHash<QString, bool> m_reading;       ///< true: must be read once more afterwards
    QCache<QString, QPixmap> m_pictures;  ///< costs in bytes
    QHash<int, QPixmap> m_fallbacks;      ///< by edge
};
