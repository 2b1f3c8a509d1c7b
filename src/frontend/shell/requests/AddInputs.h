#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

class QMimeData;

/// What the user dropped or pasted, before anything is looked at: paths of this machine, http(s) addresses,
/// and dropped addresses of other kinds, which are refused with a reason later. Pure functions of the text,
/// since a path may lie on a server that does not answer.
namespace AddInputs {

constexpr int MaximumCount = 64;  ///< the rest is left out
constexpr int MaximumCharacters = 4096;

/// Empty for anything else, such as ordinary text.
QStringList of(const QMimeData* data);
QStringList ofUrls(const QList<QUrl>& urls);
/// One input a line: addresses, "file://" addresses, absolute paths, and paths below the home directory
/// beginning with "~/". A text with any other line has no input.
QStringList ofText(const QString& text);

/// As the address field of a browser reads it, with blanks, braces and bare percent signs. Empty for anything
/// that is not an http(s) address.
QUrl address(const QString& line);
/// As logs may have it.
QString logged(const QString& input);

bool isPath(const QString& input);
bool isAddress(const QString& input);

}  // namespace AddInputs
