#include "launch/inspection/ExeIconReader.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTimer>

#include "core/base/Paths.h"
#include "launch/icons/IconFile.h"

namespace {

const char SharedDirectory[] = "/tmp/exeicons";
constexpr int LimitMs = 30000;
constexpr int Niceness = 10;

/// Files in the shared directory that are being written.
QSet<QString>& filesBeingWritten() {
    static QSet<QString> files;
    return files;
}

/// Creates the shared directory; false if another user owns it or could write to it.
bool makeSharedDirectory() {
    ::mkdir(SharedDirectory, 0700);
    struct stat status = {};
    return ::lstat(SharedDirectory, &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & 022) == 0;
}

bool isProgram(const QString& path) {
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && file.read(2) == "MZ";
}

class NiceProcess : public QProcess {
protected:
    void setupChildProcess() override { [[maybe_unused]] const int now = ::nice(Niceness); }
};

}  // namespace

ExeIconReader::ExeIconReader(const QString& exePath, QObject* parent) : QObject(parent), m_exePath(exePath) {}

ExeIconReader::~ExeIconReader() {
    if (m_tool)
        m_tool->disconnect(this);
    filesBeingWritten().remove(m_iconFile);
}

void ExeIconReader::start() {
    if (m_tool || !isProgram(m_exePath) || !chooseDirectory())
        return;
    m_tool = std::make_unique<NiceProcess>();
    m_tool->setStandardInputFile(QProcess::nullDevice());
    m_tool->setProcessChannelMode(QProcess::MergedChannels);
    connect(m_tool.get(), qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &ExeIconReader::onFinished);
    const QFileInfo target(m_iconFile);
    m_tool->start(Paths::iconExtractorScript(),
                  {"--no-convert", m_exePath, target.fileName(), target.path()});
    QTimer::singleShot(LimitMs, m_tool.get(), &QProcess::kill);
}

/// Two programs of the same name at the same time get separate files; a file left behind by an earlier run is
/// not used.
bool ExeIconReader::chooseDirectory() {
    const QString fileName = QFileInfo(m_exePath).fileName();
    const QString shared = QString(SharedDirectory) + "/" + fileName;
    if (makeSharedDirectory() && !filesBeingWritten().contains(shared)) {
        m_iconFile = shared;
        filesBeingWritten().insert(shared);
        QFile::remove(shared);
        return true;
    }
    m_ownDirectory = std::make_unique<QTemporaryDir>();
    m_iconFile = m_ownDirectory->filePath(fileName);
    return m_ownDirectory->isValid();
}

void ExeIconReader::onFinished(int exitCode, QProcess::ExitStatus status) {
    QIcon icon;
    if (status == QProcess::NormalExit && exitCode == 0)
        icon = IconFile::read(m_iconFile);
    filesBeingWritten().remove(m_iconFile);
    m_ownDirectory.reset();
    if (icon.isNull())
        qInfo() << "no icon in" << m_exePath << m_tool->readAll().trimmed().left(200);
    else
        Q_EMIT ready(icon);
}
