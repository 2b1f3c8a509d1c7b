#include "launch/winelog/FindCrashProcessRule.h"

#include "core/base/WineNames.h"

namespace {

/// Undoes the escapes that Wine writes for what is not ASCII.
QString unescaped(const QString& path) {
    static const QRegularExpression escape(R"((\\[0-9a-fA-F]{4}))");
    QString text = path;
    QRegularExpressionMatchIterator matches = escape.globalMatch(path);
    while (matches.hasNext()) {
        const QString sign = matches.next().captured(1);
        text.replace(sign, QString(QChar(ushort(sign.mid(1).toUInt(nullptr, 16)))));
    }
    return text;
}

}  // namespace

bool FindCrashProcessRule::match(const QString& line) {
    return m_process.match(line).hasMatch();
}

LogParseResult FindCrashProcessRule::result(const QString& line) {
    const QString path = unescaped(m_process.match(line).captured(1));
    if (path.isEmpty())
        return {};
    const QString file = path.split('\\').last();
    return WineNames::isCrashReporter(file) ? LogParseResult{LogCrash, {}} : LogParseResult{};
}
