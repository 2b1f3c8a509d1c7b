#pragma once

#include <QCache>
#include <QImage>
#include <QMultiHash>
#include <QObject>
#include <QPixmap>
#include <QThreadPool>

/// The pictures of programs at the size of a tile. Files are read on threads of its own, and what was read is
/// kept up to some megabytes. One for the process; GUI thread.
class ProgramIcons : public QObject {
    Q_OBJECT
public:
    static ProgramIcons* instance();

    /// The picture in device pixels of the given edge, when it is there already. Otherwise null, and ready()
    /// comes later; a file that has no picture in it gives the picture of any program.
    QPixmap picture(const QString& file, int edge);
    /// Its file may have changed: what is there stays until it is read again.
    void refresh(const QString& file);

Q_SIGNALS:
    void ready(const QString& file);

private:
    ProgramIcons();
    void read(const QString& file, int edge);
    void onRead(const QString& file, int edge, const QImage& image);
    QPixmap fallback(int edge);

    QThreadPool m_readers;
    QHash<QString, bool> m_reading;       ///< to be read again afterwards?
    QCache<QString, QPixmap> m_pictures;  ///< costs in bytes
    QHash<int, QPixmap> m_fallbacks;      ///< by edge
};
