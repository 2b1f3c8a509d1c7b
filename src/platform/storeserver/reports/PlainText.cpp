#include "storeserver/reports/PlainText.h"

#include <QVector>
#include <array>

namespace StoreServer {

namespace {

constexpr int MarksForColumn = 3;  // a few in a row belong to some languages

/// Characters of East Asia and pictures take two columns.
int columnsOf(uint character) {
    static constexpr std::array<std::array<uint, 2>, 9> wide = {{{0x1100, 0x115F},
                                                                 {0x2E80, 0xA4CF},
                                                                 {0xAC00, 0xD7A3},
                                                                 {0xF900, 0xFAFF},
                                                                 {0xFE30, 0xFE6F},
                                                                 {0xFF00, 0xFF60},
                                                                 {0xFFE0, 0xFFE6},
                                                                 {0x1F300, 0x1FAFF},
                                                                 {0x20000, 0x3FFFD}}};
    if (QChar::category(character) == QChar::Mark_NonSpacing)
        return 0;
    for (const auto& [first, last] : wide) {
        if (character >= first && character <= last)
            return 2;
    }
    return 1;
}

bool isPlain(uint character) {
    switch (QChar::category(character)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Other_PrivateUse:
        case QChar::Other_NotAssigned:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return false;
        default:
            return true;
    }
}

}  // namespace

int columnsOf(const QString& text) {
    int columns = 0;
    for (const uint character : text.toUcs4())
        columns += columnsOf(character);
    return columns;
}

QString terminalText(const QString& text, int columns) {
    QVector<uint> kept;
    int used = 0;
    for (const uint character : text.toUcs4()) {
        const uint shown = isPlain(character) ? character : '?';
        used += columnsOf(shown);
        kept.append(shown);
        if (used <= columns && kept.size() <= MarksForColumn * columns)
            continue;
        while (!kept.isEmpty() && (used >= columns || kept.size() > MarksForColumn * columns))
            used -= columnsOf(kept.takeLast());
        kept.append(0x2026);  // the ellipsis
        break;
    }
    return QString::fromUcs4(kept.constData(), kept.size());
}

QByteArray plainJson(const QByteArray& json) {
    const QString text = QString::fromUtf8(json.constData(), json.size());
    QString plain;
    plain.reserve(text.size());
    for (const uint character : text.toUcs4()) {
        const QString units = QString::fromUcs4(&character, 1);
        if (isPlain(character)) {
            plain += units;
            continue;
        }
        for (const QChar unit : units)
            plain += QString("\\u%1").arg(unit.unicode(), 4, 16, QChar('0'));
    }
    return plain.toUtf8();
}

}  // namespace StoreServer
