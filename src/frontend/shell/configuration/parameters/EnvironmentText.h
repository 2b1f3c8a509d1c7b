#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

/// A program's environment variables as one line of text, "A=1 B='x y'".
namespace EnvironmentText {

struct Parsed {
    QMap<QString, QString> values;
    /// A name begins with a number, or has a character that is no letter, number or "_". Its pair is in
    /// `values` all the same.
    bool error = false;
    /// The first thing that could not be read as a pair, and is not in `values`: a word without "=", or a
    /// value without a name.
    QString leftOut;
    bool openQuote = false;  ///< the last value's quote does not end
};

/// White space separates pairs, "=" ends a name. In a value, white space within single or double quotes does
/// not end it, and a backslash takes the next character literally. The last pair of a name counts.
Parsed parse(const QString& text);

/// The pairs of a program record's "envs", with trimmed values. Nothing is quoted: a value with blanks is not
/// read back as it was, so do not save a text that nobody has edited.
QString write(const QJsonObject& envs);

}  // namespace EnvironmentText
