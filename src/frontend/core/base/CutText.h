#pragma once

#include <QString>

/// The text, cut where needed, of at most `maximum` UTF-16 units. A character that takes two stays whole or
/// goes.
inline QString cutText(const QString& text, int maximum) {
    if (text.size() <= maximum)
        return text;
    return text.left(maximum > 0 && text[maximum - 1].isHighSurrogate() ? maximum - 1 : maximum);
}
