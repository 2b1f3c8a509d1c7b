#pragma once

#include <QImage>
#include <QString>
#include <QVector>

/// A picture that a user adds to a report, as a copy: what was shown is what is sent, whatever happens to the
/// file meanwhile.
struct ReportPicture {
    enum class Verdict { Good, TooLarge, Unreadable, NoPicture, NoRoom };  ///< NoRoom: for the copy

    Verdict verdict = Verdict::Good;
    QString name;      ///< of the user's file
    QString copy;      ///< path; empty unless good
    qint64 bytes = 0;  ///< of the copy
    QImage thumbnail;  ///< null where the picture has too many pixels to be decoded

    /// Copies the file to `copy` with the suffix of its format: png, jpg or gif by content. A JPEG's copy
    /// lacks what its camera has written about itself and the place (JpegPrivacy). Reads no more
    /// than FeedbackRules::MaximumImageBytes. For any thread; takes some 100 ms at most.
    static ReportPicture take(const QString& path, const QString& copy);
    /// The files in order until `wanted` of them are good. Those that are not are in the result, too.
    /// `firstNumber` is the name of the first copy in the directory, the next ones count on.
    static QVector<ReportPicture> takeAll(const QStringList& paths, int wanted, const QString& directory,
                                          int firstNumber);
};
