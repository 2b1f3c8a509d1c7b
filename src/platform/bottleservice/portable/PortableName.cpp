#include "bottleservice/portable/PortableName.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

/// Without what would hide it, and what Windows drops.
QString trimmed(QString name) {
    while (name.startsWith('.') || name.startsWith(' '))
        name.remove(0, 1);
    while (name.endsWith('.') || name.endsWith(' '))
        name.chop(1);
    return name;
}

}  // namespace

QString PortableName::folder(const QString& path) {
    static const QRegularExpression special(
        "[\\x00-\\x1f<>:\"/\\\\|?*]|[\\p{Cc}\\p{Cf}\\p{Cs}\\p{Zl}\\p{Zp}]",
        QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression device("^(con|prn|aux|nul|com[0-9]|lpt[0-9])(\\.|$)",
                                           QRegularExpression::CaseInsensitiveOption);
    QString name = QFileInfo(QDir::cleanPath(path)).fileName();
    if (name.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive))
        name.chop(4);
    // One character may be two units.
    QString kept;
    for (const uint unit : name.left(MaximumCharacters * 4).toUcs4()) {
        const QString character = QString::fromUcs4(&unit, 1);
        const bool isPlain = character.size() == 2 || !special.match(character).hasMatch();
        if (isPlain && kept.size() + character.size() <= MaximumCharacters)
            kept += character;
    }
    kept = trimmed(kept.simplified());
    return kept.isEmpty() || device.match(kept).hasMatch() ? trimmed("Program " + kept) : kept;
}

QString PortableName::bottle(const QString& path) {
    static const QRegularExpression unwanted("[$\\[\\]() *?'`&;!#~]");
    return "portable-" + folder(path).remove(unwanted);
}
