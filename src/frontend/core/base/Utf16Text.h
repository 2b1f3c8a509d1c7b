#pragma once

#include <QByteArray>

/// Texts in two bytes a character, as Windows programs write them into logs.
namespace Utf16Text {

/// A text that is UTF-16, by its first bytes or by the zeros in it, becomes UTF-8. In any other, ASCII that
/// is written so among other bytes loses its zeros; the rest stays byte for byte.
QByteArray toUtf8(const QByteArray& bytes);

}  // namespace Utf16Text
