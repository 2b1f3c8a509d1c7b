#include "store/client/VeskClientAnswerFiles.h"

#include <QDir>
#include <QRegularExpression>

namespace OpenAPI {

namespace {

/// The value of a parameter behind the first semicolon of a header.
QString parameterOf(const QByteArray& header, const QString& name) {
    const QRegularExpression pattern(";\\s*" + name + "\\s*=\\s*(?:\"([^\"]*)\"|([^\\s;]*))",
                                     QRegularExpression::CaseInsensitiveOption);
    const auto match = pattern.match(QString::fromUtf8(header));
    return match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
}

/// The last component of a path of either system; empty for what is no name of a file.
QString safeName(const QString& name) {
    const QString last = QString(name).replace('\\', '/').section('/', -1);
    return last == "." || last == ".." || last.contains(QChar(0)) ? QString() : last;
}

QByteArray headerOf(const QByteArrayList& lines, const QByteArray& name) {
    for (const QByteArray& line : lines) {
        const int colon = line.indexOf(':');
        if (line.left(colon).trimmed().toLower() == name)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

}  // namespace

bool VeskClientAnswerFiles::take(const QByteArray& contentType, const QByteArray& disposition,
                                 const QByteArray& body) {
    if (m_directory.isEmpty())
        return false;
    const QString name = parameterOf(disposition, "filename");
    if (disposition.trimmed().toLower().startsWith("attachment") && !safeName(name).isEmpty()) {
        store("attachment", name, contentType, body);
        return true;
    }
    const QByteArray boundary = parameterOf(contentType, "boundary").toUtf8();
    if (!contentType.trimmed().toLower().startsWith("multipart/form-data") || boundary.isEmpty())
        return false;
    const QByteArray mark = "\r\n--" + boundary;
    const QByteArray text = "\r\n" + body;
    int start = text.indexOf(mark);
    while (start >= 0) {
        start += mark.size();
        const int end = text.indexOf(mark, start);
        if (end < 0)
            break;
        takePart(text.mid(start + 2, end - start - 2));
        start = end;
    }
    return true;
}

void VeskClientAnswerFiles::takePart(const QByteArray& part) {
    const int empty = part.indexOf("\r\n\r\n");
    if (empty < 0)
        return;
    const QByteArrayList lines = part.left(empty).replace("\r\n", "\n").split('\n');
    const QByteArray disposition = headerOf(lines, "content-disposition");
    const QString field = parameterOf(disposition, "name");
    const QString name = parameterOf(disposition, "filename");
    const QByteArray bytes = part.mid(empty + 4);
    if (name.isEmpty())
        m_fields.insert(field, QString::fromUtf8(bytes));
    else
        store(field, name, headerOf(lines, "content-type"), bytes);
}

void VeskClientAnswerFiles::store(const QString& field, const QString& name, const QByteArray& contentType,
                                  const QByteArray& bytes) {
    const QString safe = safeName(name);
    HttpFileElement file;
    file.variable_name = field;
    file.request_filename = name;
    file.local_filename = QDir(m_directory).filePath(safe);
    file.mime_type = QString::fromLatin1(contentType);
    if (!safe.isEmpty() && file.saveToFile(bytes))
        m_files.insert(field, file);
}

}  // namespace OpenAPI
