#include "launch/winelog/DotNetCoreDesktopRule.h"

#include <QDebug>

bool DotNetCoreDesktopRule::match(const QString& line) {
    if (m_install.match(line).hasMatch()) {
        qInfo() << "match dotnet runtime install message: " << line;
        waitingForVersion = true;
    }
    if (!waitingForVersion || !m_version.match(line).hasMatch())
        return false;
    qInfo() << "match dotnet runtime version message: " << line;
    waitingForVersion = false;
    return true;
}

LogParseResult DotNetCoreDesktopRule::result(const QString& line) {
    const QString version = m_version.match(line).captured(1);
    return version.isEmpty() ? LogParseResult{}
                             : LogParseResult{LogMissingComponent, "dotnetcoredesktop" + version};
}
