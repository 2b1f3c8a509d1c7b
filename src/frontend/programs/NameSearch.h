#pragma once

#include <QString>
#include <QStringList>

/// Finding programs by name, as one types: letters may be left out, and Chinese and pinyin may be mixed.
/// Everything typed is text, never a pattern.
namespace NameSearch {

/// A syllable for each Chinese character, every other character as it is.
QStringList pinyinList(const QString& text);

/// What is remembered of a name, so that a keystroke only compares.
struct Name {
    Name() = default;
    /// Reads each character's pinyin; the first time that a character is met takes some microseconds.
    explicit Name(const QString& name);

    bool isEmpty() const { return folded.isNull(); }

    QString folded;  ///< without regard to case
    QString pinyin;  ///< the pinyin list joined; shared with folded for a name without Chinese
};

class Keyword {
public:
    explicit Keyword(const QString& text);

    /// The keyword's Chinese characters come in this order in the name, and its pinyin in that of the name,
    /// whatever lies between.
    bool matches(const Name& name) const;

private:
    QStringList m_ideographs;
    QStringList m_pinyin;
};

}  // namespace NameSearch
