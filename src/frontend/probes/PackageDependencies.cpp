#include <QRegularExpression>

#include "core/base/ToolProcess.h"
#include "probes/MachineUtils.h"
#include "probes/Packages.h"

namespace {

bool compareVersions(const QString& installed, const QString& relation, const QString& required) {
    return ToolProcess::run("dpkg", {"--compare-versions", installed, relation, required},
                            ToolProcess::DefaultTimeoutMs, englishProcessEnvironment())
        .succeeded();
}

QString relationWord(const QString& relation) {
    static const QMap<QString, QString> words = {{"<<", "lt"}, {"<", "lt"}, {"<=", "le"}, {"=<", "le"},
                                                 {"==", "eq"}, {"=", "eq"}, {">=", "ge"}, {"=>", "ge"},
                                                 {">>", "gt"}, {">", "gt"}};
    return words.value(relation, relation);
}

bool satisfies(const QString& version, const QString& requirement, const PackageQueries& queries) {
    if (requirement.isEmpty())
        return true;
    static const QRegularExpression pattern("(<<|<=|=|>=|>>|<|>)\\s*([0-9][0-9a-zA-Z.+~-]*)");
    const QRegularExpressionMatch match = pattern.match(requirement);
    return match.hasMatch() && queries.compare(version, relationWord(match.captured(1)), match.captured(2));
}

/// Empty if one alternative of the term holds.
PackageRequirements unmetAlternatives(const QString& term, const PackageQueries& queries) {
    static const QRegularExpression separator("\\s*\\|\\s*");
    static const QRegularExpression pattern("([^\\s\\(]+)(?:\\s*\\(([^\\)]+)\\))?");
    PackageRequirements unmet;
    for (const QString& alternative : term.split(separator, Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = pattern.match(alternative);
        const QString package = match.hasMatch() ? match.captured(1) : alternative;
        const QString requirement = match.captured(2);
        QString version;
        if (queries.installed(package, &version) && satisfies(version, requirement, queries))
            return {};
        unmet.insert(package, requirement);
    }
    return unmet;
}

}  // namespace

PackageRequirements unmetDependencies(const QString& expression) {
    return unmetDependencies(expression, {packageInstalled, compareVersions});
}

PackageRequirements unmetDependencies(const QString& expression, const PackageQueries& queries) {
    static const QRegularExpression separator(",\\s*");
    PackageRequirements unmet;
    for (const QString& term : expression.split(separator)) {
        const PackageRequirements ofTerm = unmetAlternatives(term, queries);
        for (auto entry = ofTerm.begin(); entry != ofTerm.end(); ++entry)
            unmet.insert(entry.key(), entry.value());
    }
    return unmet;
}

bool dependenciesMet(const QString& expression) {
    return unmetDependencies(expression).isEmpty();
}
