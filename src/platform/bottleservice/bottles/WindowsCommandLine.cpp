#include "bottleservice/bottles/WindowsCommandLine.h"

namespace WindowsCommandLine {

QStringList split(const QString& line) {
    QStringList arguments;
    QString current;
    bool inArgument = false;
    bool quoted = false;
    for (int i = 0; i < line.size();) {
        const QChar c = line[i];
        if (c == '\\') {
            int end = i;
            while (end < line.size() && line[end] == '\\')
                ++end;
            const int count = end - i;
            const bool beforeQuote = end < line.size() && line[end] == '"';
            current += QString(beforeQuote ? count / 2 : count, '\\');
            inArgument = true;
            i = end;
            if (beforeQuote && count % 2) {
                current += '"';
                ++i;
            }
            continue;
        }
        if (c == '"') {
            // Two quotes inside quotes are one literal quote.
            if (quoted && i + 1 < line.size() && line[i + 1] == '"') {
                current += '"';
                ++i;
            } else {
                quoted = !quoted;
            }
            inArgument = true;
        } else if (!quoted && (c == ' ' || c == '\t')) {
            if (inArgument)
                arguments += current;
            current.clear();
            inArgument = false;
        } else {
            current += c;
            inArgument = true;
        }
        ++i;
    }
    if (inArgument)
        arguments += current;
    return arguments;
}

}  // namespace WindowsCommandLine
