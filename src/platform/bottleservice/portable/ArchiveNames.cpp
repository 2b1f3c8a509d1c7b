#include "bottleservice/portable/ArchiveNames.h"

#include <QTextCodec>
#include <algorithm>

#include "bottleservice/backup/BackupPath.h"

namespace {

/// Of DOS where Windows keeps one beside its own; archivers write names in that one.
const char* codePageOf(const QLocale& locale) {
    switch (locale.language()) {
        case QLocale::Chinese:
            return locale.script() == QLocale::TraditionalChineseScript ? "Big5" : "GB18030";
        case QLocale::Japanese:
            return "Shift_JIS";
        case QLocale::Korean:
            return "windows-949";
        case QLocale::Russian:
        case QLocale::Ukrainian:
        case QLocale::Belarusian:
        case QLocale::Bulgarian:
        case QLocale::Kazakh:
            return "IBM866";
        case QLocale::Polish:
        case QLocale::Czech:
        case QLocale::Slovak:
        case QLocale::Hungarian:
        case QLocale::Slovenian:
        case QLocale::Croatian:
        case QLocale::Bosnian:
        case QLocale::Serbian:
        case QLocale::Romanian:
        case QLocale::Albanian:
            return "IBM852";
        case QLocale::Turkish:
            return "IBM857";
        case QLocale::C:
        case QLocale::English:
            return "IBM437";
        default:
            return "IBM850";
    }
}

/// Whether the bytes beyond ASCII are pairs for the characters of GB 2312.
bool isCommonChinese(const QVector<QByteArray>& names) {
    const auto isBetween = [](char byte, uchar first, uchar last) {
        return uchar(byte) >= first && uchar(byte) <= last;
    };
    for (const QByteArray& name : names) {
        for (int i = 0; i < name.size(); ++i) {
            if (uchar(name[i]) < 0x80)
                continue;
            if (!isBetween(name[i], 0xb0, 0xf7) || ++i == name.size() || !isBetween(name[i], 0xa1, 0xfe))
                return false;
        }
    }
    return true;
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

QStringList ArchiveNames::decoded(const QVector<QByteArray>& names, const QLocale& locale) {
    QByteArrayList pages{"UTF-8", codePageOf(locale), "GB18030", "IBM437"};
    const bool isWestern = pages[1] == "IBM437" || pages[1] == "IBM850";
    if (isWestern && isCommonChinese(names))
        pages.swapItemsAt(1, 2);
    QStringList texts;
    for (const QByteArray& page : qAsConst(pages)) {
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
