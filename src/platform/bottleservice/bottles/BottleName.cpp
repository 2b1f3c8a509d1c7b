#include "bottleservice/bottles/BottleName.h"

#include "bottleservice/files/WorkingDirectory.h"

namespace BottleName {

const char PublicPrefix[] = "public/";

namespace {

bool isWellFormed(const QString& text) {
    for (int i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (!text[i].isHighSurrogate() || i + 1 == text.size() || !text[i + 1].isLowSurrogate())
            return false;
        ++i;
    }
    return true;
}

bool hasControlCharacter(const QString& text) {
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
            c.category() == QChar::Separator_Paragraph)
            return true;
    }
    return false;
}

/// Empty when the name may be used.
QString faultOf(const QString& name) {
    if (name.isEmpty())
        return "The name of the bottle is empty.";
    if (!isWellFormed(name))
        return "The name of the bottle is not valid text.";
    if (hasControlCharacter(name))
        return "The name of the bottle contains a control character.";
    if (name.startsWith('/'))
        return "The name of the bottle is a path.";
    const QString part = isPublic(name) ? name.mid(int(qstrlen(PublicPrefix))) : name;
    if (part.contains('/'))
        return "The name of the bottle contains a \"/\" that does not follow \"public\".";
    if (part.isEmpty() || part == "." || part == ".." || name == "public")
        return "This name is not allowed for a bottle.";
    if (part.startsWith(WorkingDirectory::CreatingPrefix) ||
        part.startsWith(WorkingDirectory::DeletingPrefix))
        return "This name is reserved for the service's own work.";
    if (part.toUtf8().size() > MaximumPartBytes)
        return QString("The name of the bottle is longer than %1 bytes.").arg(MaximumPartBytes);
    return {};
}

}  // namespace

Reason check(const QString& name) {
    const QString fault = faultOf(name);
    return fault.isEmpty() ? Reason() : Reason(Reason::BadBottleName, {shown(name), fault});
}

bool isPublic(const QString& name) {
    return name.startsWith(PublicPrefix);
}

QString shown(const QString& name) {
    QString text = name.left(120);
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control || c.isSurrogate())
            c = QChar('?');
    }
    return text.size() < name.size() ? text + "..." : text;
}

}  // namespace BottleName
