#include "bottleservice/wine/PrefixBuilder.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <csignal>

#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/ProcessPriority.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

namespace {

constexpr int BootTimeoutMs = 300000;
constexpr int RepeatMs = 50;
constexpr int Repeats = 5;        // during an exec a process has no environment
constexpr int FilesPercent = 90;  // copying Wine's files takes nearly all of the time

int filesIn(const QString& directory) {
    return int(QDir(directory).count());
}

}  // namespace

PrefixBuilder::PrefixBuilder(const Runner& runner, const QString& directory, QObject* parent)
    : QObject(parent), m_runner(runner), m_directory(directory) {
    m_repeat.setInterval(RepeatMs);
}

void PrefixBuilder::start(Priority priority) {
    m_isLow = priority == Priority::Low;
    for (const QString& directory : SlimPrefix::peDirectories(m_runner.wine))
        m_expectedFiles += filesIn(directory);
    QProcessEnvironment environment = WineEnvironment::forProcess(WineEnvironment::forCreation(m_directory));
    // No display: otherwise Wine shows a window of its own that the prefix is being updated.
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    m_boot = new WineCommand(m_runner.wine, {"wineboot.exe", "--init"}, environment, this);
    connect(m_boot, &WineCommand::finished, this, &PrefixBuilder::onBooted);
    if (m_isLow)
        m_boot->setLowPriority();
    m_boot->start(BootTimeoutMs);
}

void PrefixBuilder::cancel() {
    m_cancelled = true;
    resume();  // a stopped wineserver cannot end
    m_boot->kill();
}

int PrefixBuilder::progress() const {
    if (m_state == State::Stopping)
        return BootedPercent;
    const int files = filesIn(m_directory + "/drive_c/windows/system32") +
                      filesIn(m_directory + "/drive_c/windows/syswow64");
    return m_expectedFiles > 0 ? qMin(FilesPercent, FilesPercent * files / m_expectedFiles) : 0;
}

void PrefixBuilder::pause() {
    if (m_isPaused || m_cancelled || m_state != State::Booting)
        return;
    qInfo() << "pausing the work in" << m_directory;
    m_isPaused = true;
    m_boot->holdTimeout();
    actRepeatedly(&PrefixBuilder::stopProcesses);
}

void PrefixBuilder::resume() {
    if (!m_isPaused)
        return;
    qInfo() << "going on with the work in" << m_directory;
    m_isPaused = false;
    actRepeatedly(&PrefixBuilder::continueProcesses);
    m_boot->continueTimeout();
}

void PrefixBuilder::raise() {
    resume();
    if (!m_isLow || m_state != State::Booting)
        return;
    m_isLow = false;
    actRepeatedly(&PrefixBuilder::raiseProcesses);
}

void PrefixBuilder::actRepeatedly(void (PrefixBuilder::*act)()) {
    m_repeat.disconnect();
    m_repeatsLeft = Repeats;
    connect(&m_repeat, &QTimer::timeout, this, [this, act] {
        (this->*act)();
        if (--m_repeatsLeft == 0)
            m_repeat.stop();
    });
    (this->*act)();
    m_repeat.start();
}

void PrefixBuilder::stopProcesses() {
    Processes::signal(m_processes.ofBottle(m_directory), SIGSTOP);
}

void PrefixBuilder::continueProcesses() {
    Processes::signal(m_processes.ofBottle(m_directory), SIGCONT);
}

void PrefixBuilder::raiseProcesses() {
    continueProcesses();
    for (const Processes::Entry& entry : m_processes.ofBottle(m_directory))
        ProcessPriority::raise(entry.pid);
}

// The wineserver runs on for a while after the last program and would write into a renamed directory.
void PrefixBuilder::onBooted(const QString& errorText) {
    resume();
    m_repeat.stop();
    m_state = State::Stopping;
    m_fault = errorText;
    if (!errorText.isEmpty() && !m_cancelled)
        qWarning() << "wineboot failed:" << errorText << m_boot->output().right(2000);
    auto* stopper = new BottleStopper(m_directory, m_runner.wineserver, this);
    connect(stopper, &BottleStopper::finished, this, &PrefixBuilder::onStopped);
    stopper->start();
}

void PrefixBuilder::onStopped(bool clean) {
    if (m_cancelled)
        m_fault = "The creation was cancelled.";
    else if (m_fault.isEmpty() && !clean)
        m_fault = "Wine did not come to rest after it had made the bottle.";
    else if (m_fault.isEmpty())
        m_fault = check(m_directory);
    Q_EMIT finished(m_fault);
}

QString PrefixBuilder::missingPart(const QString& directory) {
    for (const char* part :
         {"/system.reg", "/user.reg", "/drive_c/windows/system32/kernel32.dll", "/dosdevices/c:"}) {
        if (!QFileInfo::exists(directory + part))
            return QString(part).mid(1);
    }
    return {};
}

QString PrefixBuilder::check(const QString& directory) {
    const QString missing = missingPart(directory);
    return missing.isEmpty() ? QString() : QString("Wine made no whole bottle: %1 is missing.").arg(missing);
}
