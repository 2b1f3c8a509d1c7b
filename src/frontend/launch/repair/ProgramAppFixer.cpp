#include "launch/repair/ProgramAppFixer.h"

#include <QDebug>
#include <QFileInfo>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/ProgramRecord.h"
#include "launch/winelog/WineLogParser.h"

namespace {

const char MonoComponent[] = "mono9";
const char OpenAction[] = "_open";
const char OpenCommandHint[] = "x-lumora-action-_open";

/// The command of the notification's action. The desktop splits it at commas and has no way to escape them,
/// so arguments that are empty or contain a comma give an empty result.
QString fixupCommand(const QString& bottle, const QString& programUuid, const QStringList& components) {
    const QStringList names = QStringList{bottle, programUuid} + components;
    QStringList command{"cellarix", "--fixup"};
    bool looksLikeOption = false;
    for (const QString& name : names) {
        if (name.trimmed().isEmpty() || name.contains(','))
            return {};
        looksLikeOption = looksLikeOption || name.startsWith('-');
    }
    if (looksLikeOption)
        command << "--";
    return (command + names).join(',');
}

}  // namespace

ProgramAppFixer::ProgramAppFixer(const QString& bottlesName, const QString& programUuid, bool notifyUser,
                                 QObject* parent)
    : QObject(parent), m_bottlesName(bottlesName), m_programUuid(programUuid), m_notifyUser(notifyUser) {}

QString ProgramAppFixer::logOf(const QJsonObject& bottle, const QString& programUuid) {
    const QString log = BottleLogs::ofProgram(BottleRecord::path(bottle), programUuid);
    return QFileInfo(log).isFile() ? log : QString();
}

ProgramFixRecord ProgramAppFixer::checkProgram() {
    const QJsonObject bottle = BottlesConfig::instance()->get(m_bottlesName);
    const QString log = logOf(bottle, m_programUuid);
    if (log.isEmpty())
        return {};
    WineLogParser parser;
    parser.parseFile(log);
    QStringList components = parser.missingComponents.values();
    if (parser.monoMissing && components.isEmpty())
        components << MonoComponent;
    if (components.isEmpty())
        return {};
    const ProgramFixRecord record{m_bottlesName, m_programUuid, components, parser.parsedLogs};
    qInfo() << "program" << m_programUuid << "of" << m_bottlesName << "lacks" << components;
    Q_EMIT fixComponentsFetched(record.uuid, record.missingComponents);
    if (m_notifyUser)
        notify(ProgramRecord::name(BottleRecord::programs(bottle).value(m_programUuid).toObject()),
               components);
    return record;
}

void ProgramAppFixer::notify(const QString& programName, const QStringList& components) const {
    QStringList actions;
    QVariantMap hints;
    const QString command = fixupCommand(m_bottlesName, m_programUuid, components);
    if (command.isEmpty()) {
        qWarning() << "no action can name program" << m_programUuid << "of" << m_bottlesName << components;
    } else {
        actions << OpenAction << tr("View");
        hints.insert(OpenCommandHint, command);
    }
    DesktopUtils::notify(tr("Cellarix"),
                         tr("The program %1 is running abnormally, you can try to fix it")
                             .arg(DesktopUtils::notificationText(programName)),
                         actions, hints);
}
