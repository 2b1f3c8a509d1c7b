#include "launch/repair/ProblemReport.h"

#include "core/base/LogScrub.h"

namespace {

QString known(const QString& value) {
    return value.isEmpty() ? ProblemReport::tr("not known") : value;
}

QString lines(const QString& title, const QStringList& values) {
    return title + '\n' +
           (values.isEmpty() ? "- " + ProblemReport::tr("nothing") : "- " + values.join("\n- ")) + '\n';
}

}  // namespace

QString ProblemReport::text(const LogScrub& scrub) const {
    const QString version = programVersion.isEmpty() ? QString() : ' ' + programVersion;
    QStringList parts;
    parts << tr("Program: %1").arg(program + version);
    parts << tr("Diagnosis: %1").arg(known(diagnosis));
    parts << "Cellarix: " + known(cellarix);
    parts << tr("Wine: %1 (%2)").arg(known(wine), known(runner));
    parts << tr("System: %1").arg(known(system));
    parts << tr("Session: %1").arg(known(session));
    parts << tr("Graphics: %1").arg(known(graphics.join("; ")));
    parts << QString() << lines(tr("What was tried:"), tried);
    parts << lines(tr("Log:"), log.mid(qMax(0, log.size() - LogLines)));
    return scrub.scrubbed(parts.join('\n'));
}
