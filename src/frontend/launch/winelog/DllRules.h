#pragma once

#include <QRegularExpression>

#include "launch/winelog/LogParseRule.h"

/// Finds imports of DLLs that are not installed.
class MissingDLLRule final : public LogParseRule {
public:
    static constexpr char Import[] = "err:module:import_dll";

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_library{QString(".*%1( loading)* library (.*) \\(which is needed.*").arg(Import),
                                 QRegularExpression::CaseInsensitiveOption};
};

/// Finds calls of functions that Wine's own DLL does not implement; the native DLL of a component implements
/// them.
class UnimplementedFunctionRule final : public LogParseRule {
public:
    static constexpr char Unimplemented[] = "unimplemented";  ///< in any case of the letters

    bool match(const QString& line) override;
    LogParseResult result(const QString& line) override;

private:
    QRegularExpression m_abort{QString("wine:\\s+Call\\s+from.*%1\\s+function.*aborting").arg(Unimplemented),
                               QRegularExpression::CaseInsensitiveOption};
    QRegularExpression m_dll{QString("%1\\s+function\\s+(\\w+)\\.dll").arg(Unimplemented)};
};
