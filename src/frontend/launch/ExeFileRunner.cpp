#include "launch/ExeFileRunner.h"

#include <QFileInfo>
#include <QJsonObject>
#include <QtConcurrent>

#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "core/base/Logging.h"

namespace {

/// Records the file as a program of the bottle, once. Runs on a pool thread and blocks on the bus.
bool addFile(const QString& bottle, const QString& name, const QString& exePath) {
    const QJsonObject programs = BottleUtils::bottlePrograms(bottle);
    for (const QJsonValue& program : programs) {
        if (program.toObject().value("path").toString() == exePath) {
            qInfo().noquote() << "program " << exePath << " already added in bottles";
            return false;
        }
    }
    BottleUtils::addExe(bottle, name, exePath);
    return true;
}

}  // namespace

ExeFileRunner::ExeFileRunner(const QString& exePath, QObject* parent) : QObject(parent), m_exePath(exePath) {}

ExeFileRunner::ExeFileRunner(const QString& bottle, const QString& programUuid, QObject* parent)
    : QObject(parent), m_mode(StoredProgram), m_bottlesName(bottle), m_programUuid(programUuid) {}

int ExeFileRunner::init(const QString& path) {
    const QFileInfo file(path);
    if (!file.isFile() || file.size() == 0) {
        qWarning().noquote() << path << "not a file";
        return -1;
    }
    if (!file.isReadable()) {
        qWarning().noquote() << path + " is not readable, exit...";
        return -1;
    }
    if (m_executor && m_exePath == path) {
        qInfo().noquote() << path << "is aready init";
        return 0;
    }
    if (m_executor) {
        qInfo() << "delete last executor: ";
        m_executor->deleteLater();
    }
    qInfo().noquote() << "init for" << path;
    m_executor = new ExeFileExecutor(path, this);
    m_exePath = path;
    return 0;
}

int ExeFileRunner::run() {
    if (init(m_exePath) != 0)
        return -1;
    m_mode = File;
    m_bottlesName = m_executor->bottlesName();
    m_appName = m_executor->displayName();
    connectExecutor();
    m_startTime = QDateTime::currentDateTime();
    m_executor->start();
    return 0;
}

int ExeFileRunner::checkEntry() const {
    const QJsonObject record = BottlesConfig::instance()->get(m_bottlesName);
    if (record.isEmpty()) {
        qWarning().noquote() << "Invalid bottles name:" << m_bottlesName;
        return -1;
    }
    if (!record.value("External_Programs").toObject().contains(m_programUuid)) {
        qWarning().noquote() << "Program UUID" << m_programUuid << "not found in bottles:" << m_bottlesName;
        return -1;
    }
    return 0;
}

int ExeFileRunner::runInBottlesConfigWindow() {
    qWarning().noquote() << "There is no bottle configuration window in this version to open" << m_exePath;
    return -1;
}

int ExeFileRunner::runProgram() {
    if (checkEntry() != 0) {
        Q_EMIT emit_finished();
        return -1;
    }
    m_mode = StoredProgram;
    m_startTime = QDateTime::currentDateTime();
    m_executor = new ExeFileExecutor(QString(), this);
    m_executor->setFirstRun(0);
    m_appName =
        BottleUtils::bottlePrograms(m_bottlesName).value(m_programUuid).toObject().value("name").toString();
    m_executor->setAppName(m_appName);
    connectExecutor();
    m_executor->launchProgram(m_bottlesName, m_programUuid);
    return 0;
}

void ExeFileRunner::connectExecutor() {
    const auto logLine = [](const QString& text, MsgType type) {
        if (type == MsgError)
            qWarning().noquote() << cleanHomePaths(text);
        else if (type == MsgLine)
            qInfo().noquote() << cleanHomePaths(text);
    };
    connect(m_executor, &ExeFileExecutor::emitStep, this, logLine);
    connect(m_executor, &ExeFileExecutor::emitMsg, this, logLine);
    connect(m_executor, &ExeFileExecutor::runFailed, this, &ExeFileRunner::handleExecutorFailed);
    connect(m_executor, &ExeFileExecutor::runSuccessed, this, &ExeFileRunner::handleExecutorSuccess);
    connect(m_executor, &ExeFileExecutor::windowPopuped, this, &ExeFileRunner::handleWindowPopup);
}

void ExeFileRunner::addFileAsync() {
    QtConcurrent::run(addFile, m_bottlesName, m_appName, m_exePath);
}

void ExeFileRunner::handleWindowPopup() {
    qInfo() << "got a window popuped";
    m_succeeded = true;
    if (m_mode == File)
        addFileAsync();
}

void ExeFileRunner::checkLinks(bool success) {
    Q_UNUSED(success)
    m_linksCreated = !BottleUtils::bottlePrograms(m_bottlesName).isEmpty();
    qInfo().noquote() << "lnk created: " << (m_linksCreated ? "true" : "false");
    if (!m_linksCreated && m_mode == File)
        addFile(m_bottlesName, m_appName, m_exePath);
}

void ExeFileRunner::handleExecutorSuccess() {
    qInfo() << "show successed";
    m_elapsedSeconds = m_executor->seconds();
    checkLinks(true);
    m_succeeded = true;
    finish(true);
}

void ExeFileRunner::handleExecutorFailed(bool canFix, bool isReportSussessed) {
    Q_UNUSED(canFix)
    qInfo() << "show failed";
    m_elapsedSeconds = m_executor->seconds();
    checkLinks(false);
    m_succeeded = isReportSussessed;
    const QString name = m_appName;
    const QString text = tr("The app fails to run");
    QtConcurrent::run([name, text] { DesktopUtils::notify(name, text); });
    finish(true);
}

void ExeFileRunner::finish(bool cleanUp) {
    Q_UNUSED(cleanUp)
    if (m_finishedOnce)
        return;
    m_finishedOnce = true;
    Q_EMIT emit_finished();
    deleteLater();
}
