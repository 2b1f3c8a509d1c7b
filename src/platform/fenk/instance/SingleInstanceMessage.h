#pragma once

#include <QByteArray>
#include <QStringList>

namespace Fenk {

/// Wire format of the arguments: "FNK1", the length of the rest, the number of arguments, and each argument
/// as length and UTF-8. Numbers have four bytes, most significant byte first.
namespace SingleInstanceMessage {

constexpr quint32 MaxBytes = 1024 * 1024;  ///< after the first length
constexpr quint32 MaxArguments = 4096;

enum class State { Value, Incomplete, Invalid };

struct Parsed {
    State state = State::Invalid;
    QStringList arguments;
};

/// Empty if the arguments exceed the limits.
QByteArray encode(const QStringList& arguments);

/// Parses what has been received so far; Invalid is final.
Parsed parse(const QByteArray& bytes);

}  // namespace SingleInstanceMessage
}  // namespace Fenk
