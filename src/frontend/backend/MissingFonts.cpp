#include "backend/MissingFonts.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

bool isPlainFileName(const QString& name) {
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\\') &&
           !name.contains(QChar(0));
}

}  // namespace

QString MissingFonts::replacementFile() {
    return QStringLiteral("/usr/share/fonts/truetype/wqy/wqy-microhei.ttc");
}

void MissingFonts::fix(const QString& bottlePath, const QStringList& fontFileNames) {
    const QString directory = QString("%1/drive_c/windows/Fonts").arg(bottlePath);
    // A link would lead out of the bottle.
    if (!QDir(directory).exists() || QFileInfo(directory).isSymLink()) {
        qWarning().noquote().nospace() << "where is fonts dir? " << directory;
        return;
    }
    for (const QString& name : fontFileNames) {
        if (!isPlainFileName(name)) {
            qWarning().noquote() << "not the name of a font file:" << name;
            continue;
        }
        const QString link = directory + "/" + name;
        const QFileInfo info(link);
        if (info.exists() || info.isSymLink())
            continue;
        if (!QFile::link(replacementFile(), link))
            qWarning().noquote() << "can't link the font" << link;
    }
}
