#include "launch/inspection/ExeFileChecker.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUuid>
#include <QtConcurrentRun>

#include "core/base/Paths.h"
#include "core/base/ToolProcess.h"
#include "launch/inspection/ExeDetection.h"
#include "launch/inspection/ExeFileInfo.h"

namespace {

constexpr qint64 MaximumScanBytes = 0x500000;

/// A temporary file with the first bytes of another file; removed with the object.
class CutFile {
public:
    explicit CutFile(const QString& path)
        : m_path(QDir::tempPath() + '/' + QUuid::createUuid().toString() + QFileInfo(path).fileName()) {
        QFile source(path);
        if (!source.open(QIODevice::ReadOnly)) {
            qWarning() << "Failed to open" << path;
            m_path.clear();
            return;
        }
        QFile cut(m_path);
        if (cut.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            cut.write(source.read(MaximumScanBytes));
        else
            qWarning() << "Failed to write cutted pe" << path;
    }
    ~CutFile() {
        if (!m_path.isEmpty())
            QFile::remove(m_path);
    }
    CutFile(const CutFile&) = delete;
    CutFile& operator=(const CutFile&) = delete;

    QString path() const { return m_path; }

private:
    QString m_path;
};

}  // namespace

ExeFileChecker::ExeFileChecker(const QString& file, QObject* parent) : QObject(parent), path(file) {
    m_tasks.setCancelOnWait(false);
    m_versionTask = QtConcurrent::run([this] { readVersionInfo(); });
    m_detectionTask = QtConcurrent::run([this] { detect(); });
    m_tasks.addFuture(m_versionTask);
    m_tasks.addFuture(m_detectionTask);
}

ExeFileChecker::~ExeFileChecker() {
    m_tasks.waitForFinished();
}

void ExeFileChecker::readVersionInfo() {
    versionInfo = peVersionInfo(path, &m_versionReadable);
}

void ExeFileChecker::detect() {
    const QFileInfo file(path);
    if (path.isEmpty() || !file.isFile())
        return;
    brief = QString::fromUtf8(ToolProcess::runQuietly("file", {"--brief", path}).standardOutput);
    console = brief.contains("(console)");
    const QString tool = Paths::diecTool();
    if (!QFileInfo(tool).isFile())
        qWarning() << "diec not found: " << tool << ", will not detech exe files";
    if (file.size() <= MaximumScanBytes) {
        scan(path);
        return;
    }
    const CutFile cut(path);
    if (!cut.path().isEmpty())
        scan(cut.path());
}

void ExeFileChecker::scan(const QString& file) {
    detects =
        ExeDetection::document(ToolProcess::runQuietly(Paths::diecTool(), {"--json", file}).standardOutput);
    if (!detects.contains("detects")) {
        qWarning() << "Failed to get detects from diec";
        return;
    }
    const ExeDetection detection = ExeDetection::classify(detects);
    installerDetected = detection.installer;
    vb6Detected = detection.vb6;
    dotnetVersion = detection.dotnetVersion;
}

bool ExeFileChecker::isInstaller() {
    m_tasks.waitForFinished();
    if (brief.contains("installer", Qt::CaseInsensitive) || installerDetected)
        return true;
    // Any key or value may match: an executable whose version block mentions an installer is one.
    static const QRegularExpression words("Installer|Setup|安装|自解压|SelfExtractor",
                                          QRegularExpression::CaseInsensitiveOption);
    return words.match(QString::fromUtf8(QJsonDocument(versionInfo).toJson(QJsonDocument::Compact)))
        .hasMatch();
}

bool ExeFileChecker::isConsole() {
    m_detectionTask.waitForFinished();
    return console;
}

QJsonObject ExeFileChecker::versionBlock(bool* readable) {
    m_versionTask.waitForFinished();
    *readable = m_versionReadable;
    return versionInfo;
}

bool ExeFileChecker::isGame() {
    if (hasBeside({"steam*.dll", "UnityCrashHandle*", "UnityPlayer.dll"}))
        return true;
    m_tasks.waitForFinished();
    return versionInfo["InternalName"].toString().contains("UnrealEngine");
}

QString ExeFileChecker::requiredComponent() const {
    return ExeDetection{installerDetected, vb6Detected, dotnetVersion}.requiredComponent();
}

QJsonObject ExeFileChecker::info() {
    const bool installer = isInstaller();
    return {{"installer", installer},
            {"console", console},
            {"dotnet_version", dotnetVersion},
            {"detects", detects["detects"].toArray()},
            {"brief", brief}};
}

bool ExeFileChecker::hasPackagedRuntimeFiles() const {
    return hasBeside({"update*exe", "api-ms-win-*.dll", "msvcp*.dll", "Qt*.dll", "libcurl*.dll", "zlib.dll",
                      "libEGL*.dll", "sqlite*.dll", "qb*.pak", "*.pdb", "unin*.exe", "*crash*exe",
                      "chrome*percent.pak", "d3dcompiler*dll", "vk_swiftshader*.dll", "vulkan*dll"});
}

bool ExeFileChecker::hasBeside(const QStringList& nameFilters) const {
    return !QFileInfo(path).dir().entryList(nameFilters, QDir::Files).isEmpty();
}
