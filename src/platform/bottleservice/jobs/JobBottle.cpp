#include "bottleservice/jobs/JobBottle.h"

#include <QDebug>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/BottleBackup.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/wine/BottleAccess.h"
#include "bottleservice/wine/BottleStopper.h"

QString JobBottle::shownName() const {
    return BottleName::shown(m_name);
}

QString JobBottle::path() const {
    return m_bottles->pathOf(m_name);
}

Answer JobBottle::check() const {
    return m_bottles->check(m_name);
}

std::optional<BottleYaml> JobBottle::load(Answer* failure) const {
    return m_bottles->load(m_name, failure);
}

bool JobBottle::save(const BottleYaml& settings, QString* error) const {
    return m_bottles->save(m_name, settings, error);
}

Runner JobBottle::runnerOf(const BottleYaml& settings) const {
    return m_bottles->runnerOf(settings);
}

QStringList JobBottle::runningPrograms() const {
    return m_bottles->runningPrograms(m_name);
}

void JobBottle::waitForPrograms(QObject* context, const std::function<void(const QStringList&)>& then,
                                int limitMs) const {
    m_bottles->waitForPrograms(m_name, context, then, limitMs);
}

void JobBottle::stopProcesses(QObject* context, const QString& wineserver,
                              std::function<void(bool)> then) const {
    auto* stopper = new BottleStopper(path(), wineserver, context);
    QObject::connect(stopper, &BottleStopper::finished, context,
                     [stopper, then = std::move(then)](bool isClean) {
                         stopper->deleteLater();
                         then(isClean);
                     });
    stopper->start();
}

void JobBottle::removeBackup() const {
    QString error = BottleBackup::dismiss(path());
    if (BottleBackup::state(path()) == BottleBackup::State::None)
        return;
    const QString hidden = WorkingDirectory::pathBeside(path(), WorkingDirectory::DeletingPrefix);
    if (error.isEmpty())
        error = WorkingDirectory::moveInto(BottleBackup::pathOf(path()), hidden);
    if (error.isEmpty())
        m_reclaimer->remove(hidden);
    else
        qWarning() << error;
}
