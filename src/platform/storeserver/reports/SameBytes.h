#pragma once

#include <QByteArray>

namespace StoreServer {

/// Compares what must not be guessed byte by byte: takes the same time wherever the first difference is.
inline bool areSameBytes(const QByteArray& left, const QByteArray& right) {
    if (left.size() != right.size())
        return false;
    unsigned difference = 0;
    for (int index = 0; index < left.size(); ++index)
        difference |= unsigned(left[index] ^ right[index]);
    return difference == 0;
}

}  // namespace StoreServer
