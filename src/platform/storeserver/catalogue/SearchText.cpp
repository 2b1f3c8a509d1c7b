#include "storeserver/catalogue/SearchText.h"

#include <QStringList>
#include <QVector>
#include <algorithm>

namespace StoreServer {

namespace SearchText {

namespace {

constexpr int TripleLength = 3;

enum class Kind { Space, Chinese, Other };

Kind kindOf(uint character) {
    if (QChar::isSpace(character) || QChar::category(character) == QChar::Other_Control)
        return Kind::Space;
    switch (QChar::script(character)) {
        case QChar::Script_Han:
        case QChar::Script_Hiragana:
        case QChar::Script_Katakana:
        case QChar::Script_Bopomofo:
        case QChar::Script_Hangul:
            return Kind::Chinese;
        default:
            return Kind::Other;
    }
}

struct Part {
    Kind kind;
    QVector<uint> characters;

    QString text() const { return QString::fromUcs4(characters.constData(), characters.size()); }
    bool hasLetter() const {
        return std::any_of(characters.begin(), characters.end(),
                           [](uint character) { return QChar::isLetterOrNumber(character); });
    }
};

QVector<Part> partsOf(const QString& folded) {
    QVector<Part> parts;
    Kind last = Kind::Space;
    for (const uint character : folded.toUcs4()) {
        const Kind kind = kindOf(character);
        if (kind != Kind::Space) {
            if (kind != last)
                parts.append({kind, {}});
            parts.last().characters.append(character);
        }
        last = kind;
    }
    return parts;
}

QString quoted(QString text) {
    return '"' + text.replace('"', "\"\"") + '"';
}

bool hasAccents(uint letter) {
    const QChar::Script script = QChar::script(letter);
    return script == QChar::Script_Latin || script == QChar::Script_Greek || script == QChar::Script_Cyrillic;
}

}  // namespace

QString folded(const QString& text) {
    QVector<uint> kept;
    bool isAccented = false;
    for (const uint character : text.normalized(QString::NormalizationForm_KD).toUcs4()) {
        const bool isMark = QChar::category(character) == QChar::Mark_NonSpacing;
        if (!isMark)
            isAccented = hasAccents(character);
        if (!isMark || !isAccented)
            kept.append(character);
    }
    return QString::fromUcs4(kept.constData(), kept.size())
        .normalized(QString::NormalizationForm_C)
        .toCaseFolded();
}

QString spaced(const QString& folded) {
    QString result;
    for (const uint character : folded.toUcs4()) {
        const bool isWord = kindOf(character) == Kind::Chinese;
        if (isWord)
            result += ' ';
        result += QString::fromUcs4(&character, 1);
        if (isWord)
            result += ' ';
    }
    return result;
}

Query query(const QString& folded) {
    QStringList words;
    QStringList triples;
    for (const Part& part : partsOf(folded)) {
        if (words.size() + triples.size() == MaximumTerms)
            break;
        if (part.kind == Kind::Chinese)
            words += quoted(spaced(part.text()).simplified());
        else if (part.characters.size() >= TripleLength)
            triples += quoted(part.text());
        else if (part.hasLetter())
            words += quoted(part.text()) + '*';
    }
    return {words.join(" AND "), triples.join(" AND ")};
}

}  // namespace SearchText

}  // namespace StoreServer
