#include "manifest/ManifestPath.h"

#include <QRegularExpression>

namespace ManifestPath {

namespace {

bool isReserved(const QString& part) {
    // Also with an extension, and with the digits that Windows takes for those of COM and LPT.
    static const QRegularExpression device(
        "\\A(con|prn|aux|nul|conin\\$|conout\\$|clock\\$|(com|lpt)[0-9\u00b9\u00b2\u00b3])\\s*(\\.|\\z)",
        QRegularExpression::CaseInsensitiveOption);
    return device.match(part).hasMatch();
}

bool hasForbiddenCharacter(const QString& part) {
    static const QString forbidden("<>:\"|?*");
    for (const QChar c : part) {
        if (forbidden.contains(c) || c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            return true;
    }
    return false;
}

QString faultOf(const QString& part) {
    if (part.isEmpty() || part == "." || part == "..")
        return "must have no empty part, no \".\" and no \"..\"";
    if (hasForbiddenCharacter(part))
        return "has a character that Windows does not allow";
    if (part.endsWith('.') || part.startsWith(' ') || part.endsWith(' '))
        return "has a part that ends in a dot, or begins or ends with a blank";
    if (part.toUtf8().size() > 255)
        return "has a part of more than 255 bytes";
    return isReserved(part) ? QString("has a part that is the name of a device") : QString();
}

}  // namespace

QString check(const QString& path, Use use) {
    static const QRegularExpression drive("\\A[cC]:[\\\\/]");
    if (!drive.match(path).hasMatch())
        return "must lie on drive C:, such as \"c:\\folder\\file.ini\"";
    if (path.size() > MaximumLength)
        return QString("is longer than %1 characters").arg(MaximumLength);
    const QStringList all = parts(path);
    for (const QString& part : all) {
        const QString fault = faultOf(part);
        if (!fault.isEmpty())
            return fault;
    }
    if (use == Use::Write && all.first().compare("windows", Qt::CaseInsensitive) == 0)
        return "must not lie below c:\\windows";
    return {};
}

QStringList parts(const QString& path) {
    return QString(path).replace('\\', '/').mid(3).split('/');
}

bool isProgramName(const QString& name) {
    static const QRegularExpression plain("\\A[A-Za-z0-9_][A-Za-z0-9_.-]*\\z");
    return name.size() <= 64 && plain.match(name).hasMatch() && !name.endsWith('.') && !isReserved(name);
}

bool leadsOutOfWine(const QString& text) {
    static const QRegularExpression outside(
        "/unix(?![a-z0-9_.])|[\\\\/]{2}[?.][\\\\/]|\\\\\\?\\?\\\\|(?<![a-z0-9])z:|"
        "(?<![a-z0-9.:/\\\\])/"
        "(bin|sbin|usr|home|root|etc|tmp|var|opt|proc|dev|sys|run|mnt|media|lib|lib64|srv)"
        "[\\\\/]",
        QRegularExpression::CaseInsensitiveOption);
    // cmd.exe takes these out.
    QString plain = text;
    plain.remove('^').remove('"');
    return outside.match(plain).hasMatch();
}

}  // namespace ManifestPath
