#pragma once

#include <QStringList>

class QMimeData;

/// What the user dropped or pasted, before anything is looked at: paths of this machine and http(s)
/// addresses. Pure functions of the text, since a path may lie on a server that does not answer.
namespace AddInputs {

constexpr int MaximumCount = 64;  ///< the rest is left out
constexpr int MaximumCharacters = 4096;

/// Empty for anything else, such as ordinary text.
QStringList of(const QMimeData* data);
/// One input a line: addresses, "file://" addresses, absolute paths, and paths below the home directory
/// beginning with "~/". A text with any other line has no input.
QStringList ofText(const QString& text);

bool isAddress(const QString& input);

}  // namespace AddInputs
