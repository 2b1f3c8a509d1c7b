#include "launch/winelog/DllRules.h"

namespace {

LogParseResult componentOf(DllTable* table, const QString& key) {
    const QString component = table->componentFor(key);
    return component.isEmpty() ? LogParseResult{} : LogParseResult{LogMissingComponent, component};
}

}  // namespace

bool MissingDLLRule::match(const QString& line) {
    return line.contains("err:module:import_dll");
}

LogParseResult MissingDLLRule::result(const QString& line) {
    m_table.load();
    const QRegularExpressionMatch library = m_library.match(line);
    if (!library.hasMatch())
        return {};
    return componentOf(&m_table, library.captured(2).toLower().remove(".dll"));
}

bool UnimplementedFunctionRule::match(const QString& line) {
    return m_abort.match(line).hasMatch();
}

LogParseResult UnimplementedFunctionRule::result(const QString& line) {
    m_table.load();
    const QRegularExpressionMatch dll = m_dll.match(line);
    if (!dll.hasMatch())
        return {};
    return componentOf(&m_table, dll.captured(1).toLower());
}
