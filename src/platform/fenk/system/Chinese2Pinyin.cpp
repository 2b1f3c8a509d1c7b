#include "fenk/system/Chinese2Pinyin.h"

#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/uscript.h>

#include <QDebug>
#include <QHash>
#include <memory>
#include <mutex>

namespace Fenk {
namespace {

/// Cache of the readings of single characters, since transliteration is slow.
class Readings {
public:
    Readings() {
        UErrorCode status = U_ZERO_ERROR;
        m_transliterator.reset(
            icu::Transliterator::createInstance("Han-Latin; NFD; Lower", UTRANS_FORWARD, status));
        if (U_FAILURE(status)) {
            m_transliterator.reset();
            qWarning() << "pinyin: no readings of Chinese characters:" << u_errorName(status);
        }
    }

    /// Empty for a character without a reading.
    QString reading(char32_t character) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_cache.constFind(character);
        if (found != m_cache.constEnd())
            return *found;
        return *m_cache.insert(character, compute(character));
    }

private:
    QString compute(char32_t character) const {
        if (!m_transliterator)
            return QString();
        icu::UnicodeString text{UChar32(character)};
        m_transliterator->transliterate(text);
        QString letters;
        for (int i = 0; i < text.length(); ++i) {
            const char16_t c = text.charAt(i);
            if (c == u'\u0308' && letters.endsWith('u'))
                letters[letters.size() - 1] = 'v';
            else if (c >= 'a' && c <= 'z')
                letters += QChar(c);
        }
        return letters;
    }

    std::unique_ptr<icu::Transliterator> m_transliterator;
    std::mutex m_mutex;
    QHash<char32_t, QString> m_cache;
};

bool isHan(char32_t character) {
    UErrorCode status = U_ZERO_ERROR;
    return character >= 0x2e80 && uscript_getScript(UChar32(character), &status) == USCRIPT_HAN;
}

QString replaced(const QString& words, bool whole) {
    static Readings readings;
    QString result;
    const QVector<uint> characters = words.toUcs4();
    for (const uint character : characters) {
        const QString reading = isHan(character) ? readings.reading(character) : QString();
        if (reading.isEmpty())
            result += QString::fromUcs4(&character, 1);
        else
            result += whole ? reading : reading.left(1);
    }
    return result;
}

}  // namespace

QString Chinese2Pinyin(const QString& words) {
    return replaced(words, true);
}

QString firstLetters(const QString& words) {
    return replaced(words, false);
}

}  // namespace Fenk
