#include "fenk/log/LogFormat.h"

#include <QLatin1String>
#include <cstring>

namespace Fenk {
namespace {

QString baseName(const char* file) {
    if (!file)
        return QString();
    const char* slash = std::strrchr(file, '/');
    return QString::fromUtf8(slash ? slash + 1 : file);
}

/// The position of "operator" as a separate word, or -1.
int operatorAt(const QString& text) {
    const QLatin1String word("operator");
    for (int at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + 1)) {
        const bool begins = at == 0 || (!text.at(at - 1).isLetterOrNumber() && text.at(at - 1) != '_');
        const int after = at + word.size();
        const bool ends = after < text.size() && !text.at(after).isLetterOrNumber() && text.at(after) != '_';
        if (begins && ends)
            return at;
    }
    return -1;
}

/// The position of the parenthesis that opens the arguments of the outermost function, or the length.
int argumentsAt(const QString& text, int nameOperator) {
    const int end = nameOperator < 0 ? text.size() : nameOperator;
    int depth = 0;
    for (int i = 0; i < end; ++i) {
        const QChar c = text.at(i);
        if (c == '<')
            ++depth;
        else if (c == '>')
            --depth;
        else if (c == '(' && depth == 0)
            return i;
    }
    if (nameOperator < 0)
        return end;
    const int from = nameOperator + int(std::strlen("operator"));
    const int open = text.indexOf('(', text.midRef(from).startsWith(QLatin1String("()")) ? from + 2 : from);
    return open < 0 ? text.size() : open;
}

/// The position of the name after the return type: after the last blank outside template arguments.
int nameAt(const QString& text) {
    int depth = 0;
    for (int i = text.size() - 1; i >= 0; --i) {
        const QChar c = text.at(i);
        if (c == '>')
            ++depth;
        else if (c == '<')
            --depth;
        else if (c == ' ' && depth == 0)
            return i + 1;
    }
    return 0;
}

}  // namespace

QString LogFormat::shortFunction(const char* function) {
    QString text = QString::fromUtf8(function);
    text.remove(QLatin1String("{anonymous}::"));
    text.remove(QLatin1String("(anonymous namespace)::"));
    text.remove(QLatin1String("(anonymous class)::"));
    const int with = text.indexOf(QLatin1String(" [with "));
    if (with >= 0)
        text.truncate(with);
    const int nameOperator = operatorAt(text);
    text.truncate(argumentsAt(text, nameOperator));
    text.remove(0, nameAt(nameOperator < 0 ? text : text.left(nameOperator)));
    while (text.startsWith('*') || text.startsWith('&'))
        text.remove(0, 1);
    return text;
}

QString LogFormat::typeName(QtMsgType type) {
    switch (type) {
        case QtDebugMsg:
            return QStringLiteral("Debug");
        case QtInfoMsg:
            return QStringLiteral("Info");
        case QtWarningMsg:
            return QStringLiteral("Warning");
        case QtCriticalMsg:
            return QStringLiteral("Error");
        case QtFatalMsg:
            return QStringLiteral("Fatal");
    }
    return QString();
}

LogFormat::LogFormat(const QString& format) : m_text(format) {
    QString literal;
    const auto flush = [&] {
        if (!literal.isEmpty())
            m_parts.append({Field::Text, literal, 0});
        literal.clear();
    };
    for (int i = 0; i < format.size();) {
        Part part;
        if (format.midRef(i).startsWith(QLatin1String("%%"))) {
            literal += '%';
            i += 2;
        } else if (format.at(i) == '%' && parsePlaceholder(format, i, part)) {
            flush();
            m_parts.append(part);
        } else {
            literal += format.at(i++);
        }
    }
    flush();
}

/// Parses "%{name:width}" and, after a time, "{format}" at `position` and advances it; returns false and
/// leaves it unchanged for anything else.
bool LogFormat::parsePlaceholder(const QString& text, int& position, Part& part) {
    static const struct {
        QLatin1String name;
        Field field;
    } fields[] = {
        {QLatin1String("time"), Field::Time},         {QLatin1String("type"), Field::Type},
        {QLatin1String("file"), Field::File},         {QLatin1String("line"), Field::Line},
        {QLatin1String("function"), Field::Function}, {QLatin1String("Function"), Field::FullFunction},
        {QLatin1String("category"), Field::Category}, {QLatin1String("message"), Field::Message}};
    const int close = text.indexOf('}', position);
    if (close < 0 || !text.midRef(position).startsWith(QLatin1String("%{")))
        return false;
    const QStringRef inside = text.midRef(position + 2, close - position - 2);
    const int colon = inside.indexOf(':');
    bool number = true;
    const int width = colon < 0 ? 0 : inside.mid(colon + 1).toInt(&number);
    for (const auto& known : fields) {
        if (inside.left(colon < 0 ? inside.size() : colon) != known.name || !number || qAbs(width) > 1000)
            continue;
        part.field = known.field;
        part.width = width;
        position = close + 1;
        const int end = text.indexOf('}', position);
        if (known.field == Field::Time && text.midRef(position).startsWith('{') && end >= 0) {
            part.argument = text.mid(position + 1, end - position - 1);
            position = end + 1;
        }
        return true;
    }
    return false;
}

QByteArray LogFormat::format(const QDateTime& time, QtMsgType type, const char* file, int line,
                             const char* function, const QString& category, const QString& message) const {
    QString result;
    result.reserve(message.size() + 128);
    for (const Part& part : m_parts) {
        QString value;
        switch (part.field) {
            case Field::Text:
                value = part.argument;
                break;
            case Field::Time:
                value =
                    part.argument.isEmpty() ? time.toString(Qt::ISODateWithMs) : time.toString(part.argument);
                break;
            case Field::Type:
                value = typeName(type);
                break;
            case Field::File:
                value = baseName(file);
                break;
            case Field::Line:
                value = QString::number(line);
                break;
            case Field::Function:
                value = shortFunction(function);
                break;
            case Field::FullFunction:
                value = QString::fromUtf8(function);
                break;
            case Field::Category:
                value = category;
                break;
            case Field::Message:
                value = message;
                break;
        }
        result += part.width < 0 ? value.leftJustified(-part.width) : value.rightJustified(part.width);
    }
    return result.toUtf8();
}

}  // namespace Fenk
