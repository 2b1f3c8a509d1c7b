#include "launch/winelog/WineEscapes.h"

QString unescapedWineText(const QString& text) {
    QString plain;
    plain.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        const QChar next = text[i + 1];
        bool isCode = false;
        const ushort code = text.midRef(i + 1, 4).toUShort(&isCode, 16);
        if (isCode && i + 5 <= text.size()) {
            plain += QChar(code);
            i += 4;
            continue;
        }
        plain += next == 'n' || next == 'r' || next == 't' ? QChar(' ') : next;
        ++i;
    }
    return plain;
}
