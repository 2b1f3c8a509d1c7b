#pragma once

#include <QByteArray>
#include <QStringList>

namespace Fenk {

/// The arguments on their way between two processes: "FNK1", the length of the rest, the number of arguments,
/// and each argument as length and UTF-8. Numbers have four bytes, most significant first.
namespace SingleInstanceMessage {

constexpr quint32 MaxBytes = 1024 * 1024;  ///< of the part behind the first length
constexpr quint32 MaxArguments = 4096;

enum class State { Value, Incomplete, Invalid };

struct Parsed {
    State state = State::Invalid;
    QStringList arguments;
};

/// Empty when the arguments are beyond the limits.
QByteArray encode(const QStringList& arguments);

/// Judges what has come so far; Invalid is final.
Parsed parse(const QByteArray& bytes);

}  // namespace SingleInstanceMessage
}  // namespace Fenk
