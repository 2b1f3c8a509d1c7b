#include "feedback/dialogs/ReportSaver.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>

#include "backend/InBackground.h"
#include "feedback/client/UploadPlace.h"

namespace {

constexpr int CancelMs = 100;  ///< within which a cancelled archiver is killed
constexpr int ChunkBytes = 1 << 20;
constexpr int LongestText = 500;  ///< of the archiver
const char Folder[] = "cellarix-report";

using Cancelled = std::shared_ptr<std::atomic<bool>>;

/// Files of the same name in both would be one: pictures and logs have a directory each.
bool copyInto(const QString& directory, const QStringList& files) {
    if (!QDir().mkpath(directory))
        return false;
    for (const QString& file : files) {
        if (!QFile::copy(file, directory + '/' + QFileInfo(file).fileName()))
            return false;
    }
    return true;
}

bool lay(const QString& directory, const ReportSaver::Report& report) {
    QFile json(directory + "/report.json");
    return copyInto(directory + "/pictures", report.pictures) && copyInto(directory + "/logs", report.logs) &&
           json.open(QIODevice::WriteOnly) && json.write(report.json) == report.json.size() && json.flush();
}

QString pack(const QString& place, const QString& archive, const Cancelled& isCancelled) {
    QProcess tar;
    tar.setStandardOutputFile(QProcess::nullDevice());
    // The owner would name the user.
    tar.start("tar", {"--owner=0", "--group=0", "--numeric-owner", "-C", place, "-czf", archive, Folder});
    if (!tar.waitForStarted())
        return ReportSaver::tr("The program “tar” is missing.");
    while (!tar.waitForFinished(CancelMs) && tar.state() != QProcess::NotRunning) {
        if (*isCancelled)
            tar.kill();
    }
    if (tar.exitStatus() == QProcess::NormalExit && tar.exitCode() == 0)
        return {};
    const QString said = QString::fromLocal8Bit(tar.readAllStandardError().left(LongestText)).simplified();
    qWarning().noquote() << "tar says:" << said;
    return ReportSaver::tr("The report could not be packed.");
}

QString copyTo(const QString& archive, const QString& path, const Cancelled& isCancelled) {
    QFile source(archive);
    QSaveFile target(path);
    if (source.open(QIODevice::ReadOnly) && target.open(QIODevice::WriteOnly)) {
        while (!source.atEnd() && !*isCancelled) {
            const QByteArray chunk = source.read(ChunkBytes);
            if (chunk.isEmpty() || target.write(chunk) != chunk.size())
                break;
        }
        if (source.atEnd() && target.commit())
            return {};
    }
    return ReportSaver::tr("The report could not be written to %1: %2").arg(path, target.errorString());
}

QString write(const QString& path, const ReportSaver::Report& report, const Cancelled& isCancelled) {
    const QTemporaryDir place(UploadPlace::newLogs());
    const QString folder = place.path() + '/' + Folder;
    if (!place.isValid() || !QDir().mkpath(folder) || !lay(folder, report))
        return ReportSaver::tr("There is no room for the parts of the report.");
    const QString archive = place.path() + "/report.tar.gz";
    const QString errorText = pack(place.path(), archive, isCancelled);
    return errorText.isEmpty() && !*isCancelled ? copyTo(archive, path, isCancelled) : errorText;
}

}  // namespace

ReportSaver::~ReportSaver() {
    cancel();
}

void ReportSaver::save(const QString& path, const Report& report,
                       const QVector<std::shared_ptr<QTemporaryDir>>& keptAlive) {
    cancel();
    m_isCancelled = std::make_shared<std::atomic<bool>>(false);
    inBackground(
        this,
        [path, report, keptAlive, isCancelled = m_isCancelled] { return write(path, report, isCancelled); },
        [this, path, isCancelled = m_isCancelled](const QString& errorText) {
            if (*isCancelled)
                return;
            m_isCancelled.reset();
            if (!errorText.isEmpty())
                qWarning().noquote() << "report not saved:" << path << errorText;
            Q_EMIT finished(path, errorText);
        });
}

void ReportSaver::cancel() {
    if (m_isCancelled)
        *m_isCancelled = true;
    m_isCancelled.reset();
}
