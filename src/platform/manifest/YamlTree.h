#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>
#include <utility>

/// The nodes of a YAML text with the places where they stand. Stricter than YamlText: for a language in which
/// only the plain forms of YAML make sense. Anchors, aliases, tags, repeated keys, keys that are no text, and
/// a second document are refused while the text is being read, so that a short text cannot stand for a large
/// tree.
struct YamlTree {
    enum class Kind { Null, Text, List, Map };

    static constexpr int MaximumDepth = 16;
    static constexpr int MaximumNodes = 20000;
    /// Brackets, commas and colons from one node to the next, also inside of a text.
    static constexpr int MaximumIndicators = 100000;
    static bool isIndicator(char c) { return c == '[' || c == '{' || c == ',' || c == ':'; }

    Kind kind = Kind::Null;
    bool isQuoted = false;  ///< of a text; a plain one may stand for a number or a truth value
    int line = 1;           ///< from 1
    int column = 1;
    QString text;
    QVector<YamlTree> items;                         ///< of a list
    QVector<std::pair<YamlTree, YamlTree>> entries;  ///< of a map, key and value in the order of the text

    /// On failure a null node and one sentence with line and column.
    static YamlTree parse(const QByteArray& text, QString* error);

    /// "Line 12, column 5: " and the sentence.
    QString located(const QString& sentence) const;
    /// A text of the tree as an error text may show it: of limited length, control characters replaced.
    static QString shown(const QString& text);
};
