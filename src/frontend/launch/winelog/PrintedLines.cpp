#include "launch/winelog/PrintedLines.h"

namespace {

constexpr int EndBytes = 64 << 10;
constexpr int LinesOfAnEnd = 200;
constexpr int LongestLine = 1024;

bool isChannelLine(const QByteArray& line) {
    const int colon = line.indexOf(':');
    bool isNumber = false;
    line.left(std::min(colon, 8)).toUInt(&isNumber, 16);
    return colon > 0 && (isNumber || line.startsWith("err:") || line.startsWith("fixme:") ||
                         line.startsWith("warn:") || line.startsWith("trace:"));
}

void addLines(const QByteArray& bytes, QStringList* list) {
    const int limit = list->size() + LinesOfAnEnd;
    int begin = 0;
    while (begin < bytes.size() && list->size() < limit) {
        const int newline = bytes.indexOf('\n', begin);
        const int end = newline < 0 ? bytes.size() : newline;
        const QByteArray line = bytes.mid(begin, std::min(end - begin, LongestLine)).trimmed();
        begin = end + 1;
        if (!line.isEmpty() && !isChannelLine(line) && !line.startsWith("launcher: "))
            list->append(QString::fromUtf8(line));
    }
}

}  // namespace

QStringList printedLines(const QByteArray& log) {
    QStringList lines;
    addLines(log.left(EndBytes), &lines);
    if (log.size() > EndBytes)
        addLines(log.right(std::min(EndBytes, log.size() - EndBytes)), &lines);
    return lines;
}
