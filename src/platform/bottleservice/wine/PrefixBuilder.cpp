#include "bottleservice/wine/PrefixBuilder.h"

#include <QDebug>
#include <QFileInfo>

#include "bottleservice/wine/BottleStopper.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

namespace {

constexpr int BootTimeoutMs = 300000;

}  // namespace

PrefixBuilder::PrefixBuilder(const Runner& runner, const QString& directory, QObject* parent)
    : QObject(parent), m_runner(runner), m_directory(directory) {}

void PrefixBuilder::start() {
    QProcessEnvironment environment = WineEnvironment::forProcess(WineEnvironment::forCreation(m_directory));
    // Wine's own "is being updated" window would be the first that a user sees.
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    m_boot = new WineCommand(m_runner.wine, {"wineboot.exe", "--init"}, environment, this);
    connect(m_boot, &WineCommand::finished, this, &PrefixBuilder::onBooted);
    m_boot->start(BootTimeoutMs);
}

void PrefixBuilder::cancel() {
    m_cancelled = true;
    m_boot->kill();
}

// The server lives on for a while after the last program; it would write into a directory that is gone.
void PrefixBuilder::onBooted(const QString& sentence) {
    m_fault = sentence;
    if (!sentence.isEmpty() && !m_cancelled)
        qWarning() << "wineboot failed:" << sentence << m_boot->output().right(2000);
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

QString PrefixBuilder::check(const QString& directory) {
    for (const char* part :
         {"/system.reg", "/user.reg", "/drive_c/windows/system32/kernel32.dll", "/dosdevices/c:"}) {
        if (!QFileInfo::exists(directory + part))
            return QString("Wine made no whole bottle: %1 is missing.").arg(QString(part).mid(1));
    }
    return {};
}
