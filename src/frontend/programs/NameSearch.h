#pragma once

#include <QString>
#include <QStringList>

/// Matches program names against a keyword as the user types it. The keyword may skip letters of the name
/// and may mix Chinese and pinyin; it is text, never a pattern. For any thread.
namespace NameSearch {

/// A syllable for each Chinese character, every other character as it is.
QStringList pinyinList(const QString& text);

/// A name prepared for matching, so that a keystroke only compares.
struct Name {
    Name() = default;
    /// Looks up the pinyin, some microseconds for each character that is new to the process.
    explicit Name(const QString& name);

    bool isEmpty() const { return folded.isNull(); }

    QString folded;  ///< case-folded
    QString pinyin;  ///< the pinyin list joined and case-folded; equals folded for a name without Chinese
};

class Keyword {
public:
    explicit Keyword(const QString& text);

    /// True when the keyword's Chinese characters occur in the name, and its pinyin in the name's pinyin, in
    /// the same order with anything in between.
    bool matches(const Name& name) const;

private:
    QStringList m_ideographs;
    QStringList m_pinyin;
};

}  // namespace NameSearch
