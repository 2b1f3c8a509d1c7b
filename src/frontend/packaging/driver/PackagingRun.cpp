#include "packaging/driver/PackagingRun.h"

#include <QDebug>
#include <QDir>

#include "core/base/Logging.h"
#include "core/base/Paths.h"
#include "packaging/driver/PackageCompression.h"

namespace {
const QLatin1String ProgressPrefix("::progress:: ");
}

PackagingRun::PackagingRun(QObject* parent) : QObject(parent) {
    m_startTimer.setSingleShot(true);
    m_startTimer.setInterval(StartTimeoutMs);
    connect(&m_startTimer, &QTimer::timeout, this, [this] {
        m_process.kill();
        end(End::Failed);
    });
    m_killTimer.setSingleShot(true);
    m_killTimer.setInterval(KillTimeoutMs);
    connect(&m_killTimer, &QTimer::timeout, &m_process, &QProcess::kill);
    connect(&m_process, &QProcess::started, this, [this] {
        m_startTimer.stop();
        qInfo() << "started";
    });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        takeErrors({m_process.errorString()});
        end(End::Failed);
    });
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            [this] { take(m_output.add(m_process.readAllStandardOutput())); });
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { takeErrors(m_errors.add(m_process.readAllStandardError())); });
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this](int code, QProcess::ExitStatus status) {
                take(m_output.rest());
                takeErrors(m_errors.rest());
                if (m_isCancelled)
                    end(End::Cancelled);
                else
                    end(code == 0 && status == QProcess::NormalExit ? End::Packed : End::Failed);
            });
}

PackagingRun::~PackagingRun() {
    disconnect(&m_process, nullptr, this, nullptr);
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(KillTimeoutMs);
}

void PackagingRun::start(const QString& bottleName, const QString& saveDirectory, const QString& compression,
                         const QString& logDirectory) {
    QDir().mkpath(logDirectory);
    m_log.setFileName(logDirectory + "/" + "package.log");
    if (!m_log.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qWarning().noquote() << "can't write" << m_log.fileName() << m_log.errorString();
    m_process.setProgram(Paths::packagerScript());
    QStringList arguments{bottleName, "--savedir", saveDirectory};
    if (compression != PackageCompression::Xz)  // the script's default
        arguments << "--compression" << compression;
    m_process.setArguments(arguments);
    m_startTimer.start();
    m_process.start(QIODevice::ReadWrite);
}

void PackagingRun::cancel() {
    if (!isRunning())
        return;
    m_isCancelled = true;
    m_process.terminate();
    m_killTimer.start();
}

double PackagingRun::progressOf(const QString& line) {
    if (!line.startsWith(ProgressPrefix))
        return -1;
    bool isNumber = false;
    const double percent = line.mid(ProgressPrefix.size()).toDouble(&isNumber);
    return isNumber && percent >= 0 && percent <= 100 ? percent : -1;
}

QString PackagingRun::failureText() const {
    const QString text = m_failure.text();
    return text.isEmpty() ? m_lastError : text;
}

void PackagingRun::takeErrors(const QStringList& lines) {
    if (!lines.isEmpty())
        m_lastError = cleanHomePaths(lines.last().trimmed());
    take(lines);
}

void PackagingRun::take(const QStringList& lines) {
    for (const QString& raw : lines) {
        const QString text = raw.trimmed();
        if (m_log.isOpen())
            m_log.write(text.toUtf8() + '\n');
        const double percent = progressOf(text);
        if (percent >= 0) {
            qDebug() << "Progress::" << percent;
            Q_EMIT progress(percent);
        } else if (!m_failure.take(text) && !text.isEmpty()) {
            Q_EMIT line(cleanHomePaths(text));
        }
    }
}

void PackagingRun::end(End end) {
    if (std::exchange(m_hasEnded, true))
        return;
    m_startTimer.stop();
    m_killTimer.stop();
    m_log.close();
    qInfo().nospace().noquote() << "saved package logs: " << m_log.fileName();
    Q_EMIT finished(end);
}
