#include "feedback/dialogs/ReportPicture.h"

#include <QBuffer>
#include <QDebug>
#include <QFileInfo>
#include <QImageReader>

#include "feedback/dialogs/FeedbackForm.h"
#include "feedback/dialogs/JpegPrivacy.h"
#include "fenk/system/RegularFile.h"
#include "launch/icons/IconFile.h"
#include "launch/icons/UntrustedImage.h"

using FeedbackRules::MaximumImageBytes;

namespace {

/// By content; empty for what is none of the formats that a report takes.
QString suffixOf(const QByteArray& format) {
    if (format == "jpeg" || format == "jpg")
        return QStringLiteral("jpg");
    return format == "png" || format == "gif" ? QString::fromLatin1(format) : QString();
}

/// False for what is broken. A picture that is only too large for its thumbnail is good.
bool decode(const QByteArray& bytes, ReportPicture* picture, QString* suffix) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const QImageReader reader(&buffer);
    *suffix = suffixOf(reader.format());
    const QSize size = reader.size();
    if (suffix->isEmpty() || size.isEmpty())
        return false;
    picture->thumbnail = UntrustedImage::decode(bytes).image;
    const int edge = qMax(qMax(size.width(), size.height()), IconFile::gifEdge(bytes));
    return !picture->thumbnail.isNull() || edge > UntrustedImage::MaxEdge;
}

}  // namespace

ReportPicture ReportPicture::take(const QString& path, const QString& copy) {
    ReportPicture picture;
    picture.name = QFileInfo(path).fileName();
    QFile file;
    if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed)) {
        picture.verdict = Verdict::Unreadable;
        return picture;
    }
    QByteArray bytes = file.read(MaximumImageBytes + 1);
    QString suffix;
    if (bytes.size() > MaximumImageBytes) {
        picture.verdict = Verdict::TooLarge;
    } else if (!decode(bytes, &picture, &suffix)) {
        picture.verdict = Verdict::NoPicture;
    } else {
        if (suffix == QLatin1String("jpg"))
            bytes = JpegPrivacy::stripped(bytes);
        QFile target(copy + '.' + suffix);
        if (target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size() && target.flush()) {
            picture.copy = target.fileName();
            picture.bytes = bytes.size();
        } else {
            qWarning().noquote() << "a picture cannot be copied:" << target.errorString();
            picture.verdict = Verdict::NoRoom;
        }
    }
    return picture;
}

QVector<ReportPicture> ReportPicture::takeAll(const QStringList& paths, int wanted, const QString& directory,
                                              int firstNumber) {
    QVector<ReportPicture> pictures;
    int good = 0;
    for (const QString& path : paths) {
        if (good == wanted) {
            qInfo("already have 9 images");
            break;
        }
        pictures += take(path, QString("%1/%2").arg(directory).arg(firstNumber + good));
        if (pictures.last().verdict == Verdict::Good)
            ++good;
    }
    return pictures;
}
