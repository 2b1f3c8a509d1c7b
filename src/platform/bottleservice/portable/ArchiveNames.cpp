#include "bottleservice/portable/ArchiveNames.h"

#include <QTextCodec>
#include <algorithm>

#include "bottleservice/backup/BackupPath.h"

namespace {

const char DosCodePage[] = "IBM437";

QByteArray codePageOf(QLocale::Language language) {
    switch (language) {
        case QLocale::Japanese:
            return "Shift_JIS";
        case QLocale::Korean:
            return "windows-949";
        case QLocale::Russian:
        case QLocale::Ukrainian:
            return "IBM866";
        default:
            return "GB18030";
    }
}

bool fits(const QVector<QByteArray>& names, const QTextCodec* codec, QStringList* texts) {
    texts->clear();
    for (const QByteArray& name : names) {
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        *texts += codec->toUnicode(name.constData(), name.size(), &state);
        // Bytes that GB18030 does not define become private characters.
        const bool isText = std::none_of(texts->last().cbegin(), texts->last().cend(), [](QChar c) {
            return c == QChar::ReplacementCharacter || c.category() == QChar::Other_PrivateUse;
        });
        if (state.invalidChars > 0 || state.remainingChars > 0 || !isText)
            return false;
    }
    return true;
}

}  // namespace

QStringList ArchiveNames::decoded(const QVector<QByteArray>& names, QLocale::Language language) {
    QStringList texts;
    for (const QByteArray& page :
         {QByteArray("UTF-8"), codePageOf(language), QByteArray("GB18030"), QByteArray(DosCodePage)}) {
        const QTextCodec* codec = QTextCodec::codecForName(page);
        if (codec && fits(names, codec, &texts))
            return texts.replaceInStrings("\\", "/");
    }
    texts.clear();
    for (const QByteArray& name : names)
        texts += QString::fromLatin1(name);
    return texts.replaceInStrings("\\", "/");
}

bool ArchiveNames::isInside(const QString& name) {
    const bool isDrive = name.size() > 1 && name[1] == ':';
    return !isDrive && BackupPath::isInside(name.toUtf8());
}
