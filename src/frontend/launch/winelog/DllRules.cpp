#include "launch/winelog/DllRules.h"

#include "launch/winelog/DllTable.h"

namespace {

LogParseResult componentOf(const QString& key) {
    const QString component = DllTable::componentFor(key);
    return component.isEmpty() ? LogParseResult{} : LogParseResult{LogMissingComponent, component};
}

}  // namespace

bool MissingDLLRule::match(const QString& line) {
    return line.contains(Import);
}

LogParseResult MissingDLLRule::result(const QString& line) {
    const QRegularExpressionMatch library = m_library.match(line);
    if (!library.hasMatch())
        return {};
    return componentOf(library.captured(2).toLower().remove(".dll"));
}

bool UnimplementedFunctionRule::match(const QString& line) {
    return m_abort.match(line).hasMatch();
}

LogParseResult UnimplementedFunctionRule::result(const QString& line) {
    const QRegularExpressionMatch dll = m_dll.match(line);
    if (!dll.hasMatch())
        return {};
    return componentOf(dll.captured(1).toLower());
}
