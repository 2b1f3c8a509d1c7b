#include "bottleservice/wine/DetachedCommand.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace DetachedCommand {

namespace {

constexpr int MaximumLogNameCharacters = 64;

// The bottle's programs may have put a link there, which must not be followed.
QString usableLogFile(const QString& bottlePath, const QString& name) {
    const QString directory = bottlePath + "/logs";
    if (!QFileInfo::exists(directory))
        QDir().mkdir(directory);
    const QFileInfo log(directory + '/' + name);
    const bool harmless =
        !QFileInfo(directory).isSymLink() && !log.isSymLink() && (!log.exists() || log.isFile());
    return harmless ? log.filePath() : QProcess::nullDevice();
}

}  // namespace

QString start(const QString& wine, const QStringList& arguments, const QProcessEnvironment& environment,
              const QString& bottlePath) {
    QProcess process;
    process.setProgram(wine);
    process.setArguments(arguments);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(bottlePath + "/drive_c");
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardOutputFile(usableLogFile(bottlePath, logName(arguments.first())));
    qint64 pid = 0;
    if (!process.startDetached(&pid))
        return QString("%1 could not be started: %2.").arg(wine, process.errorString());
    qInfo() << "started" << arguments << "in" << bottlePath << "as process" << pid;
    return {};
}

QString logName(const QString& program) {
    QString name = QString(program).replace('\\', '/').section('/', -1).left(MaximumLogNameCharacters);
    for (QChar& c : name) {
        const bool plain = c.unicode() < 128 && (c.isLetterOrNumber() || c == '.' || c == '-' || c == '_');
        if (!plain)
            c = QChar('_');
    }
    return "command-" + name + ".txt";
}

}  // namespace DetachedCommand
