#include "core/base/Utf16Text.h"

#include <QTextCodec>
#include <algorithm>

namespace {

constexpr int SampleBytes = 4096;
constexpr int ShortestRun = 4;  // characters; less is data

/// Most of such a text's characters are below 256, and few have a zero in their other byte.
const char* codecOf(const QByteArray& bytes) {
    if (bytes.startsWith("\xff\xfe"))
        return "UTF-16LE";
    if (bytes.startsWith("\xfe\xff"))
        return "UTF-16BE";
    int zeros[2] = {0, 0};
    const int size = std::min(bytes.size(), SampleBytes) & ~1;
    for (int i = 0; i < size; ++i)
        zeros[i % 2] += bytes[i] == 0;
    const auto dominates = [size](int many, int few) { return many > size / 4 && few < size / 32; };
    if (dominates(zeros[1], zeros[0]))
        return "UTF-16LE";
    return dominates(zeros[0], zeros[1]) ? "UTF-16BE" : nullptr;
}

bool isText(char c) {
    return (c >= ' ' && c <= '~') || c == '\n' || c == '\r' || c == '\t';
}

int runLength(const QByteArray& bytes, int begin) {
    int length = 0;
    while (begin + 1 < bytes.size() && isText(bytes[begin]) && bytes[begin + 1] == 0) {
        begin += 2;
        ++length;
    }
    return length;
}

}  // namespace

QByteArray Utf16Text::toUtf8(const QByteArray& bytes) {
    if (const char* codec = codecOf(bytes))
        return QTextCodec::codecForName(codec)->toUnicode(bytes).toUtf8();
    if (!bytes.contains('\0'))
        return bytes;
    QByteArray text;
    text.reserve(bytes.size());
    for (int i = 0; i < bytes.size();) {
        const int length = runLength(bytes, i);
        const int end = i + std::max(1, 2 * length);
        for (const int step = length < ShortestRun ? 1 : 2; i < end; i += step)
            text += bytes[i];
    }
    return text;
}
