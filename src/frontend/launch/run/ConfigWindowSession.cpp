#include "launch/run/ConfigWindowSession.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>

#include "backend/BottlesConfig.h"
#include "backend/ServiceLoss.h"
#include "core/base/WineNames.h"
#include "launch/run/LaunchedProgram.h"

ConfigWindowSession* ConfigWindowSession::open(const ProgramRef& program, LaunchWindows::ConfigMode mode,
                                               const QDateTime& since, QWidget* over, QObject* parent) {
    const auto openWindow = LaunchWindows::instance().configuration;
    BottleConfigWindow* window = openWindow ? openWindow(program, mode, over) : nullptr;
    return window ? new ConfigWindowSession(window, program.bottle, since, parent) : nullptr;
}

ConfigWindowSession::ConfigWindowSession(BottleConfigWindow* window, const QString& bottle,
                                         const QDateTime& since, QObject* parent)
    : QObject(parent), m_window(window), m_bottle(bottle), m_since(since) {
    connect(window, &BottleConfigWindow::closed, this, &ConfigWindowSession::onClosed);
}

/// Wine's own maker of menu entries is switched off in the bottles, whatever their runner.
void ConfigWindowSession::onClosed() {
    const QPointer<ConfigWindowSession> alive(this);
    if (!m_isBottleUnfinished)
        BottlesConfig::instance()->scanApplicationLinks(m_bottle, m_since, this);
    if (alive)
        Q_EMIT closed();
}

bool ConfigWindowSession::showFile(LaunchedProgram& program) {
    if (!prepareBottle())
        return false;
    program.addFile();
    m_window->selectProgram(program.file.exePath);
    m_window->setLoading(false);
    return true;
}

void ConfigWindowSession::selectProgram(const QString& exePath) {
    if (m_window)
        m_window->selectProgram(exePath);
}

/// False when the window was closed meanwhile; this object may be gone by then.
bool ConfigWindowSession::prepareBottle() {
    const QPointer<ConfigWindowSession> alive(this);
    const auto isOpen = [this, &alive] { return alive && m_window; };
    QCoreApplication::processEvents();
    if (!isOpen())
        return false;
    m_window->setLoading(true);
    const bool hasBottle = BottlesConfig::instance()->list().contains(m_bottle);
    if (isOpen() && !hasBottle)
        createBottle();
    if (!isOpen())
        return false;
    m_isBottleUnfinished = false;
    return true;
}

void ConfigWindowSession::createBottle() {
    BottlesConfig* config = BottlesConfig::instance();
    const QString bottle = m_bottle;
    qInfo().noquote() << "Waiting for bottles create..." << bottle;
    QEventLoop loop;
    connect(config, &BottlesConfig::bottlesCreated, &loop, [&](const QString& created) {
        if (created == bottle)
            loop.quit();
    });
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    whenServiceIsLost(&loop, [&loop] { loop.quit(); });
    m_isBottleUnfinished = true;
    config->createBottles(bottle, WineNames::defaultRunner());
    loop.exec();
    qInfo().noquote() << "Bottles created..." << bottle;
}
