#include "bottleservice/wine/Runners.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/SlimPrefix.h"

const char Runners::DefaultName[] = "lumora-wine10-stable";
const char Runners::StagingName[] = "lumora-wine-staging";
const char Runners::StagingDirectory[] = "/opt/wine-staging";

namespace {

QString firstExecutable(const QStringList& paths) {
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (info.isFile() && info.isExecutable())
            return info.absoluteFilePath();
    }
    return {};
}

std::optional<Runner> runnerOf(const QString& name, const QString& wine) {
    if (wine.isEmpty())
        return std::nullopt;
    QString server = firstExecutable({QFileInfo(wine).absolutePath() + "/wineserver"});
    if (server.isEmpty())
        server = QStandardPaths::findExecutable("wineserver");
    return Runner{name, wine, server};
}

std::optional<Runner> machineWine() {
    for (const char* command : {"wine", "wine64"}) {
        const QString path = QStandardPaths::findExecutable(command);
        if (!path.isEmpty())
            return runnerOf(Runners::DefaultName, QFileInfo(path).absoluteFilePath());
    }
    return std::nullopt;
}

}  // namespace

QStringList Runners::names() const {
    QStringList names;
    const QStringList entries = QDir(m_directory).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& entry : entries) {
        if (find(entry))
            names += entry;
    }
    for (const char* machines : {StagingName, DefaultName}) {
        if (!names.contains(machines) && find(machines))
            names.prepend(machines);
    }
    return names;
}

std::optional<Runner> Runners::find(const QString& name) const {
    const bool isEntry =
        !name.isEmpty() && !name.startsWith('.') && !name.contains('/') && !name.contains(QChar(0));
    if (isEntry) {
        if (const auto own = runnerOf(name, wineIn(m_directory + '/' + name)))
            return own;
    }
    if (name == StagingName)
        return runnerOf(name, wineIn(m_stagingDirectory));
    return name == DefaultName ? machineWine() : std::nullopt;
}

Reason Runners::missing(const QString& name) {
    return name == DefaultName ? Reason(Reason::NoWine) : Reason(Reason::NoRunner, {BottleName::shown(name)});
}

QString Runners::wineIn(const QString& directory) {
    QStringList paths;
    for (const char* place : {"/bin/", "/files/bin/"})
        paths << directory + place + "wine" << directory + place + "wine64";
    return firstExecutable(paths);
}

bool Runners::runs32Bit(const QString& wine, const QString& loader) {
    const QStringList directories = SlimPrefix::peDirectories(wine);
    return std::any_of(directories.cbegin(), directories.cend(), [&loader](const QString& directory) {
        if (!directory.endsWith("/i386-windows") || !QFileInfo::exists(directory + "/ntdll.dll"))
            return false;
        return !QFileInfo::exists(QFileInfo(directory).path() + "/i386-unix/ntdll.so") ||
               QFileInfo::exists(loader);
    });
}

QString Runners::wineserverFor(const QString& name) const {
    auto runner = find(name);
    if (!runner)
        runner = find(DefaultName);
    return runner ? runner->wineserver : QString();
}

QString Runners::parseVersion(const QByteArray& output) {
    static const QRegularExpression expression("^wine-(\\S+)", QRegularExpression::MultilineOption);
    const QString line = QString::fromLocal8Bit(output).trimmed();
    const QRegularExpressionMatch match = expression.match(line);
    return match.hasMatch() ? match.captured(1) : line.section('\n', 0, 0).left(64);
}
