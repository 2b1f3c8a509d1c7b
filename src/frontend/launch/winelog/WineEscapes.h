#pragma once

#include <QString>

/// A text as the program knew it, from what Wine wrote of it: there a backslash and four hexadecimal digits
/// stand for a character that is not ASCII, two backslashes for one, and \n, \r and \t for spaces.
QString unescapedWineText(const QString& text);
