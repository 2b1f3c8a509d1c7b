#pragma once

#include <QString>

namespace StoreServer {

/// How names, briefs and descriptions are searched. What is typed is split into words, and within these into
/// Chinese and other parts; an application is found if it has all of them. Chinese parts, and other parts of
/// three characters or more, are found anywhere; shorter ones where a word starts with them. Letters match in
/// either case and width, and those of Latin, Greek and Cyrillic with or without their accents.
namespace SearchText {

constexpr int MaximumTerms = 8;

/// In one case and width and without accents, as all other functions and both indexes expect it.
QString folded(const QString& text);

/// A text for the index of words: every Chinese character is a word of its own.
QString spaced(const QString& folded);

/// The full text queries for the index of words and that of character triples. An empty one is none; if both
/// are, nothing can be found.
struct Query {
    QString words;
    QString triples;

    bool isEmpty() const { return words.isEmpty() && triples.isEmpty(); }
};
Query query(const QString& folded);

}  // namespace SearchText

}  // namespace StoreServer
