#include "programs/ProgramIcons.h"

#include <QCoreApplication>
#include <QDir>
#include <QPainter>
#include <QPointer>
#include <algorithm>

#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "fenk/style/Theme.h"
#include "launch/icons/IconFile.h"

namespace {

constexpr int CacheBytes = 48 * 1024 * 1024;
constexpr int Readers = 2;

/// The smallest image that is large enough, scaled to `edge`. One of at most half that size is only doubled.
QImage readPicture(const QString& file, int edge) {
    QImage best;
    for (const QImage& image : IconFile::images(file)) {
        const bool better = best.width() >= edge ? image.width() >= edge && image.width() < best.width()
                                                 : image.width() > best.width();
        if (best.isNull() || better)
            best = image;
    }
    if (best.isNull())
        return best;
    if (std::max(best.width(), best.height()) > edge / 2)
        return best.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return best.scaled(best.size() * 2, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QString key(const QString& file, int edge) {
    return QString::number(edge) + file;
}

}  // namespace

ProgramIcons* ProgramIcons::instance() {
    // Pixmaps must be deleted before the application object.
    static QPointer<ProgramIcons> icons;
    if (!icons) {
        icons = new ProgramIcons;
        icons->setParent(QCoreApplication::instance());
    }
    return icons;
}

ProgramIcons::ProgramIcons() : m_pictures(CacheBytes) {
    m_readers.setMaxThreadCount(Readers);
}

QPixmap ProgramIcons::fallback(int edge) {
    QPixmap& picture = m_fallbacks[edge];
    if (!picture.isNull())
        return picture;
    picture = QPixmap(edge, edge);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    Fenk::Theme::icon(ProgramRecord::iconFallback()).paint(&painter, picture.rect());
    return picture;
}

QPixmap ProgramIcons::picture(const QString& file, int edge) {
    if (const QPixmap* known = m_pictures.object(key(file, edge)))
        return *known;
    if (!QDir::isAbsolutePath(file))
        return fallback(edge);
    if (!m_reading.contains(key(file, edge)))
        read(file, edge);
    return {};
}

void ProgramIcons::read(const QString& file, int edge) {
    m_reading.insert(key(file, edge), false);
    inBackground(
        this, [file, edge] { return readPicture(file, edge); },
        [this, file, edge](const QImage& image) { onRead(file, edge, image); }, &m_readers);
}

void ProgramIcons::onRead(const QString& file, int edge, const QImage& image) {
    if (m_reading.take(key(file, edge)))
        read(file, edge);
    auto* picture = new QPixmap(image.isNull() ? fallback(edge) : QPixmap::fromImage(image));
    m_pictures.insert(key(file, edge), picture, std::max(1, picture->width() * picture->height() * 4));
    Q_EMIT ready(file);
}

void ProgramIcons::refresh(const QString& file) {
    const QList<QString> known = m_pictures.keys() + m_reading.keys();
    for (const QString& picture : known) {
        const int edgeEnd = picture.indexOf('/');
        if (picture.midRef(edgeEnd) != file)
            continue;
        const auto reading = m_reading.find(picture);
        if (reading == m_reading.end())
            read(file, picture.leftRef(edgeEnd).toInt());
        else
            *reading = true;
    }
}
