#include "bottleservice/wine/BottleAccess.h"

#include <QDebug>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/LaunchData.h"
#include "bottleservice/wine/LaunchRecords.h"
#include "bottleservice/wine/Templates.h"

using Fault = Answer::Fault;

Answer BottleAccess::check(const QString& bottle) const {
    const Reason invalid = BottleName::check(bottle);
    if (!invalid.isEmpty())
        return Answer::failure(Fault::InvalidArgs, invalid);
    if (m_store.state(bottle) == BottleStore::State::Missing)
        return Answer::failure(Fault::NoSuchBottle, Reason(Reason::NoBottle, {BottleName::shown(bottle)}));
    const QString foreign = m_store.check(bottle);
    return foreign.isEmpty() ? Answer::of() : Answer::failure(Fault::NoSuchBottle, foreign);
}

std::optional<BottleYaml> BottleAccess::load(const QString& bottle, Answer* failure) const {
    *failure = check(bottle);
    if (!failure->isGood())
        return std::nullopt;
    QString error;
    auto settings = m_store.load(bottle, &error);
    if (!settings)
        *failure = Answer::failure(Fault::Failed, error);
    return settings;
}

bool BottleAccess::save(const QString& bottle, const BottleYaml& settings, QString* error) const {
    if (!m_store.save(bottle, settings, error)) {
        qWarning() << *error;
        return false;
    }
    writeLaunchData(bottle, settings);
    return true;
}

void BottleAccess::updateLaunchData(const QString& bottle, const BottleYaml& settings) const {
    if (LaunchData::isStale(pathOf(bottle)))
        writeLaunchData(bottle, settings);
}

// A failure here is no failure of the request: a launch reads bottle.yml itself when this file is missing or
// older.
void BottleAccess::writeLaunchData(const QString& bottle, const BottleYaml& settings) const {
    const QString path = pathOf(bottle);
    QString error;
    if (!LaunchData::write(path, LaunchData::render(path, settings.record(), runnerOf(settings)), &error))
        qWarning() << error;
}

Runner BottleAccess::runnerOf(const BottleYaml& settings) const {
    const QString name = settings.runner();
    const auto runner = m_runners.find(name.isEmpty() ? QString(Runners::DefaultName) : name);
    return runner ? *runner : Runner{name, {}, {}};
}

QStringList BottleAccess::runningPrograms(const QString& bottle) const {
    Answer failure;
    const auto settings = load(bottle, &failure);
    return RunningPrograms::names(Processes().ofBottle(pathOf(bottle)),
                                  LaunchRecord::starting(m_store.runningDir(), bottle),
                                  settings ? settings->programs() : QJsonObject());
}

void BottleAccess::waitForPrograms(const QString& bottle, QObject* context,
                                   const std::function<void(const QStringList&)>& then, int limitMs) const {
    RunningPrograms::await(
        context, limitMs, [this, bottle] { return runningPrograms(bottle); }, then);
}

QStringList BottleAccess::outdated() const {
    QStringList bottles;
    for (const QString& bottle : m_store.names()) {
        QString error;
        const auto settings = m_store.load(bottle, &error);
        const QString made = settings ? settings->templateKey() : QString();
        const QString key = made.isEmpty() ? QString() : Templates::keyOf(runnerOf(*settings));
        if (!key.isEmpty() && key != made)
            bottles += bottle;
    }
    return bottles;
}

QStringList BottleAccess::neededTemplates() const {
    QStringList keys;
    for (const QString& name : m_runners.names())
        keys += Templates::keyOf(*m_runners.find(name));
    for (const QString& bottle : m_store.names()) {
        QString error;
        if (const auto settings = m_store.load(bottle, &error))
            keys += settings->templateKey();
    }
    return keys;
}
