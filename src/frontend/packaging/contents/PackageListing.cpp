#include "packaging/contents/PackageListing.h"

#include <QDebug>
#include <QJsonDocument>
#include <utility>

#include "core/base/Logging.h"
#include "core/base/Paths.h"

PackageListing::PackageListing(QObject* parent) : QObject(parent) {
    m_delay.setSingleShot(true);
    m_delay.setInterval(DelayMs);
    connect(&m_delay, &QTimer::timeout, this, &PackageListing::start);
}

void PackageListing::want(const QString& bottle, const QString& packageName, const QJsonObject& programs) {
    const bool isOtherName = std::exchange(m_packageName, packageName) != packageName;
    if (bottle != m_bottle || programs != m_programs) {
        m_bottle = bottle;
        m_programs = programs;
        retry();
    } else if (isOtherName && m_state == State::Listed) {
        askForName();
    }
}

void PackageListing::askForName() {
    drop();
    m_summary.nameCause.clear();
    m_isNameOnly = true;
    m_delay.start();
}

void PackageListing::retry() {
    drop();
    m_isNameOnly = false;
    if (m_programs.isEmpty()) {
        m_hasSummary = false;
        setState(State::Idle);
        return;
    }
    m_delay.start();
    setState(State::Running);
}

void PackageListing::cancel() {
    if (m_state != State::Running)
        return;
    drop();
    setState(State::Cancelled);
}

void PackageListing::setState(State state) {
    m_state = state;
    Q_EMIT changed();
}

/// The script may hang on a server that does not answer: nobody waits for its end.
void PackageListing::drop() {
    m_delay.stop();
    m_output.clear();
    QProcess* process = std::exchange(m_process, nullptr);
    if (!process)
        return;
    process->disconnect(this);
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process,
            &QObject::deleteLater);
    connect(process, &QProcess::errorOccurred, process, &QObject::deleteLater);
    process->kill();
}

void PackageListing::start() {
    m_process = new QProcess;  // may outlive this object
    connect(m_process, &QProcess::readyReadStandardOutput, this, [this] {
        m_output += m_process->readAllStandardOutput();
        if (m_output.size() > MaximumBytes)
            end(false);
    });
    connect(m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this](int code, QProcess::ExitStatus status) {
                m_output += m_process->readAllStandardOutput();
                end(code == 0 && status == QProcess::NormalExit);
            });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end(false);
    });
    m_process->start(Paths::packagerScript(), {"--list", m_bottle});
    if (!m_process)  // it could not be started
        return;
    m_askedName = m_packageName;
    QJsonObject choices{{"pkgname", m_packageName}};
    if (!m_isNameOnly)
        choices.insert("programs", m_programs);
    m_process->write(QJsonDocument(choices).toJson(QJsonDocument::Compact));
    m_process->closeWriteChannel();
}

void PackageListing::end(bool hasSucceeded) {
    const QByteArray output = m_output;
    const QStringList errors =
        QString::fromUtf8(m_process->readAllStandardError()).split('\n', Qt::SkipEmptyParts);
    const QString processError = m_process->errorString();
    drop();
    const auto summary = hasSucceeded ? PackageSummary::fromJson(output) : std::nullopt;
    if (m_isNameOnly) {
        m_summary.nameCause = summary ? summary->nameCause : QString();
        setState(State::Listed);
        return;
    }
    if (summary) {
        m_summary = *summary;
        m_hasSummary = true;
        if (m_askedName != m_packageName)  // changed meanwhile
            askForName();
        setState(State::Listed);
        return;
    }
    PackagingFailure failure;
    for (const QString& line : QString::fromUtf8(output).split('\n'))
        failure.take(line.trimmed());
    m_errorText = failure.text();
    if (m_errorText.isEmpty())
        m_errorText = cleanHomePaths(errors.isEmpty() ? processError : errors.last().trimmed());
    qWarning().noquote() << "can't list the package of" << m_bottle << m_errorText;
    m_hasSummary = false;
    setState(State::Failed);
}
