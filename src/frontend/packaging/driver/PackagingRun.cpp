#include "packaging/driver/PackagingRun.h"

#include <QDebug>
#include <QDir>

#include "backend/InBackground.h"
#include "core/base/Logging.h"
#include "core/base/Paths.h"
#include "packaging/config/PackageMaintainer.h"
#include "packaging/driver/PackageCompression.h"

namespace {
const QLatin1String ProgressPrefix("::progress:: ");
}

PackagingRun::PackagingRun(QObject* parent) : QObject(parent), m_process(new QProcess) {
    m_startTimer.setSingleShot(true);
    m_startTimer.setInterval(StartTimeoutMs);
    connect(&m_startTimer, &QTimer::timeout, this, [this] {
        m_process->kill();
        end(End::Failed);
    });
    m_killTimer.setSingleShot(true);
    m_killTimer.setInterval(KillTimeoutMs);
    connect(&m_killTimer, &QTimer::timeout, m_process, &QProcess::kill);
    connect(m_process, &QProcess::started, this, [this] {
        m_startTimer.stop();
        qInfo() << "started";
    });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        takeErrors({m_process->errorString()});
        end(End::Failed);
    });
    connect(m_process, &QProcess::readyReadStandardOutput, this,
            [this] { take(m_output.add(m_process->readAllStandardOutput()), false); });
    connect(m_process, &QProcess::readyReadStandardError, this,
            [this] { takeErrors(m_errors.add(m_process->readAllStandardError())); });
    connect(m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this](int code, QProcess::ExitStatus status) {
                take(m_output.rest(), false);
                takeErrors(m_errors.rest());
                if (m_isCancelled)
                    end(End::Cancelled);
                else
                    end(code == 0 && status == QProcess::NormalExit ? End::Packed : End::Failed);
            });
}

/// The script may hang on a server that does not answer: nobody waits for its end.
PackagingRun::~PackagingRun() {
    m_process->disconnect(this);
    if (m_process->state() == QProcess::NotRunning) {
        m_process->deleteLater();
        return;
    }
    connect(m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), m_process,
            &QObject::deleteLater);
    connect(m_process, &QProcess::errorOccurred, m_process, &QObject::deleteLater);
    m_process->kill();
}

void PackagingRun::start(const QString& bottleName, const QString& saveDirectory, const QString& compression,
                         const QString& logDirectory) {
    m_logPath = logDirectory + "/" + "package.log";
    m_process->setProgram(Paths::packagerScript());
    m_process->setProcessEnvironment(PackageMaintainer::environment());
    QStringList arguments{bottleName, "--savedir", saveDirectory};
    if (compression != PackageCompression::Xz)  // the script's default
        arguments << "--compression" << compression;
    m_process->setArguments(arguments);
    m_isOpening = true;
    inBackground(
        this,
        [path = m_logPath, logDirectory, thread = thread()] {
            QDir().mkpath(logDirectory);
            auto log = std::make_shared<QFile>(path);
            if (!log->open(QIODevice::WriteOnly | QIODevice::Truncate))
                qWarning().noquote() << "can't write" << path << log->errorString();
            log->moveToThread(thread);
            return log;
        },
        [this](const std::shared_ptr<QFile>& log) {
            m_isOpening = false;
            m_log = log;
            if (m_isCancelled) {
                end(End::Cancelled);
                return;
            }
            m_startTimer.start();
            m_process->start(QIODevice::ReadWrite);
        });
}

void PackagingRun::cancel() {
    if (!isRunning())
        return;
    m_isCancelled = true;
    if (m_isOpening)
        return;
    m_process->terminate();
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
    take(lines, true);
}

void PackagingRun::take(const QStringList& lines, bool areErrors) {
    for (const QString& raw : lines) {
        const QString text = raw.trimmed();
        if (m_log->isOpen())
            m_log->write(text.toUtf8() + '\n');
        const double percent = progressOf(text);
        if (percent >= 0) {
            qInfo() << "Progress::" << percent;
            Q_EMIT progress(percent);
        } else if (!m_failure.take(text) && !text.isEmpty()) {
            Q_EMIT line(cleanHomePaths(text), areErrors);
        }
    }
}

void PackagingRun::end(End end) {
    if (std::exchange(m_hasEnded, true))
        return;
    m_startTimer.stop();
    m_killTimer.stop();
    if (m_log)
        m_log->close();
    qInfo().nospace().noquote() << "saved package logs: " << m_logPath;
    Q_EMIT finished(end);
}
