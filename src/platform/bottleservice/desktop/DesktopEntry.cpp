#include "bottleservice/desktop/DesktopEntry.h"

namespace {

/// Control characters are replaced and backslashes escaped.
QString value(const QString& text) {
    QString line;
    for (const QChar& c : text) {
        if (c == '\\')
            line += "\\\\";
        else
            line += c.unicode() < 0x20 || c.unicode() == 0x7f ? QChar(' ') : c;
    }
    return line.trimmed();
}

}  // namespace

QString DesktopEntry::quoted(const QString& argument) {
    QString text = argument;
    text.replace('%', "%%");
    for (const char* sign : {"\\", "\"", "`", "$"})
        text.replace(sign, QString("\\") + sign);
    return '"' + text + '"';
}

QByteArray DesktopEntry::toText() const {
    QStringList words;
    for (const QString& word : command)
        words += quoted(word);
    if (!fileArgument.isEmpty())
        words += fileArgument;
    QStringList lines{"[Desktop Entry]",     "Type=Application",    "Version=1.1",
                      "Name=" + value(name), "Icon=" + value(icon), "Exec=" + value(words.join(' ')),
                      "StartupNotify=true"};
    if (!wmClass.isEmpty())
        lines += "StartupWMClass=" + value(wmClass);
    if (isHidden)
        lines += "NoDisplay=true";
    if (mimeTypes.isEmpty())
        lines += "Categories=Utility;";
    else
        lines += "MimeType=" + value(mimeTypes.join(';')) + ';';
    return lines.join('\n').toUtf8() + '\n';
}
