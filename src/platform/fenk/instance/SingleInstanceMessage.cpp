#include "fenk/instance/SingleInstanceMessage.h"

#include <QtEndian>

namespace Fenk {
namespace SingleInstanceMessage {
namespace {

constexpr int Word = 4;

QByteArray magic() {
    return QByteArrayLiteral("FNK1");
}

void appendNumber(QByteArray& bytes, quint32 number) {
    const quint32 big = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char*>(&big), Word);
}

quint32 numberAt(const QByteArray& bytes, int position) {
    return qFromBigEndian<quint32>(bytes.constData() + position);
}

Parsed parseBody(const QByteArray& bytes, int position) {
    const quint32 count = numberAt(bytes, position);
    position += Word;
    if (count > MaxArguments)
        return {};
    Parsed result;
    for (quint32 i = 0; i < count; ++i) {
        if (bytes.size() - position < Word)
            return {};
        const quint32 length = numberAt(bytes, position);
        position += Word;
        if (length > quint32(bytes.size() - position))
            return {};
        const QByteArray raw = bytes.mid(position, int(length));
        const QString argument = QString::fromUtf8(raw);
        if (raw.contains('\0') || argument.toUtf8() != raw)
            return {};
        result.arguments.append(argument);
        position += int(length);
    }
    if (position != bytes.size())
        return {};
    result.state = State::Value;
    return result;
}

}  // namespace

QByteArray encode(const QStringList& arguments) {
    if (quint32(arguments.size()) > MaxArguments)
        return QByteArray();
    QByteArray body;
    appendNumber(body, quint32(arguments.size()));
    for (const QString& argument : arguments) {
        const QByteArray raw = argument.toUtf8();
        appendNumber(body, quint32(raw.size()));
        body.append(raw);
        if (quint32(body.size()) > MaxBytes)
            return QByteArray();
    }
    QByteArray message = magic();
    appendNumber(message, quint32(body.size()));
    return message + body;
}

Parsed parse(const QByteArray& bytes) {
    const QByteArray start = magic();
    if (!start.startsWith(bytes.left(start.size())))
        return {};
    const int header = start.size() + Word;
    if (bytes.size() < header)
        return {State::Incomplete, {}};
    const quint32 length = numberAt(bytes, start.size());
    if (length < Word || length > MaxBytes)
        return {};
    const quint32 there = quint32(bytes.size() - header);
    if (there < length)
        return {State::Incomplete, {}};
    return there > length ? Parsed{} : parseBody(bytes, header);
}

}  // namespace SingleInstanceMessage
}  // namespace Fenk
