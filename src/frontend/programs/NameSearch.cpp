#include "programs/NameSearch.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <algorithm>

#include "fenk/system/Chinese2Pinyin.h"

namespace NameSearch {

namespace {

constexpr ushort FirstIdeograph = 19968;
constexpr ushort IdeographCount = 20901;

bool isIdeograph(QChar character) {
    return ushort(character.unicode() - FirstIdeograph) <= IdeographCount;
}

/// Whether each part follows the one before it: a regular expression of the parts with ".*" in between, but
/// in linear time.
bool inOrder(const QStringList& parts, const QString& text) {
    int from = 0;
    for (const QString& part : parts) {
        from = text.indexOf(part, from);
        if (from < 0)
            return false;
        from += part.size();
    }
    return true;
}

QStringList folded(QStringList list) {
    for (QString& part : list)
        part = part.toCaseFolded();
    return list;
}

}  // namespace

QStringList pinyinList(const QString& text) {
    static const QRegularExpression ToneDigits("[0-9]");
    QStringList list;
    list.reserve(text.size());
    for (const QChar character : text) {
        if (!isIdeograph(character)) {
            list << QString(character);
            continue;
        }
        QString syllable = Fenk::Chinese2Pinyin(QString(character));
        syllable.remove(ToneDigits);
        list << syllable;
    }
    return list;
}

Name::Name(const QString& name) : folded(name.isNull() ? QString("") : name.toCaseFolded()) {
    const bool chinese = std::any_of(name.begin(), name.end(), isIdeograph);
    pinyin = chinese ? pinyinList(name).join(QString()).toCaseFolded() : folded;
}

Keyword::Keyword(const QString& text) : m_pinyin(pinyinList(text)) {
    for (const QChar character : text) {
        if (isIdeograph(character))
            m_ideographs << QString(character);
    }
    qInfo() << "org keyword " << text << " pinyin keyword " << m_pinyin;
    m_pinyin = folded(m_pinyin);
}

bool Keyword::matches(const Name& name) const {
    if (QLoggingCategory::defaultCategory()->isDebugEnabled())
        qDebug() << "pattern " << m_ideographs.join(".*") << " strSource " << name.folded;
    return inOrder(m_ideographs, name.folded) && inOrder(m_pinyin, name.pinyin);
}

}  // namespace NameSearch
