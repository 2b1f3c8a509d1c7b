#include "launch/repair/ProblemReport.h"

#include <QRegularExpression>

#include "core/base/Logging.h"

namespace {

constexpr int MinimumNameLength = 3;  // shorter names occur within too many words

QString known(const QString& value) {
    return value.isEmpty() ? ProblemReport::tr("not known") : value;
}

QString lines(const QString& title, const QStringList& values) {
    return title + '\n' +
           (values.isEmpty() ? "- " + ProblemReport::tr("nothing") : "- " + values.join("\n- ")) + '\n';
}

}  // namespace

QString ProblemReport::scrubbed(QString text, const QString& home, const QString& user) {
    if (home.size() > 1) {
        text.replace(home, "@home_dir@");
        // As in Wine paths and in the log, which doubles each backslash.
        const QString inWine = QRegularExpression::escape(home).replace("\\/", "/").replace("/", "\\\\+");
        text.replace(QRegularExpression(inWine, QRegularExpression::CaseInsensitiveOption), "@home_dir@");
    }
    text = cleanHomePaths(text);
    if (user.size() >= MinimumNameLength && user != "root")
        text.replace(QRegularExpression("\\b" + QRegularExpression::escape(user) + "\\b",
                                        QRegularExpression::UseUnicodePropertiesOption |
                                            QRegularExpression::CaseInsensitiveOption),
                     "@user@");
    return text;
}

QString ProblemReport::text(const QString& home, const QString& user) const {
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
    return scrubbed(parts.join('\n'), home, user);
}
